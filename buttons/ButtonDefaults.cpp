#include "buttons/ButtonDefaults.h"

#include "buttons/KeySequences.h"
#include "devicelink/SelectedDevice.h"
#include "productdata/ConfigStore.h"

#include <algorithm>

using namespace KeyCatalogue;

namespace {

/** Type of a key sequence, as the product file spells it. */
const QLatin1String sequenceType("0x05");

// Elements of such a default, by its length.
constexpr int consumerLength = 3;
constexpr int usageElement = 2;
constexpr int combinationLength = 4;
constexpr int combinationElement = 3;

} // namespace

ButtonDefaults::Default ButtonDefaults::ofSlot(int slot)
{
    Default result;
    const QStringList list =
        ConfigStore::instance()->valueList(selectedSection(), QStringLiteral("KeyParam%1").arg(slot + 1));
    if (list.isEmpty() || list.first().trimmed() != sequenceType)
        return result;
    result.kind = Default::Untouched;
    if (list.size() == consumerLength) {
        const int usage = list.at(usageElement).trimmed().toInt(nullptr, 16);
        const auto *const key = std::find_if(subEntries.begin(), subEntries.end(), [usage](const SubEntry &entry) {
            return entry.type == KeySequenceType && (entry.value & 0xFF) == (usage & 0xFF);
        });
        if (key != subEntries.end()) {
            result.kind = Default::Sequence;
            result.consumerKey = key;
            result.sequence = KeySequences::consumerSequence(key->value);
        }
    } else if (list.size() == combinationLength) {
        result.kind = Default::Sequence;
        result.combination = list.at(combinationElement).trimmed();
        KeySequences::KeyCombinationToSequence(result.combination, result.sequence);
    }
    return result;
}
