#include "productdata/FirmwareImages.h"

#include "productdata/ModelData.h"

#include <QDateTime>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

constexpr int versionAt = 16;
constexpr int targetAt = 20;
constexpr int cidAt = 21;
constexpr int midAt = 22;
constexpr int nameAt = 87;
constexpr int nameSize = 64;

/** A file as it was when its header was read; another size or time later means that somebody writes it. */
struct Candidate
{
    QString path;
    QByteArray header;
    qint64 size = 0;
    QDateTime changed;

    bool isStill(const QFileInfo &now) const { return now.size() == size && now.lastModified() == changed; }
};

QString withoutV(const QString &version) { return version.startsWith(QLatin1Char('v')) ? version.mid(1) : version; }

bool isMeant(const FirmwareImages::Header &header, const FirmwareImages::Request &request)
{
    return header.target == request.target && header.cid == request.cid && header.mid == request.mid &&
           header.modelName == request.modelName;
}

/** The files that a search finds, the one to prefer last. */
QList<Candidate> candidates(const FirmwareImages::Request &request, const QString &deviceVersion, const QString &in)
{
    QList<Candidate> found;
    if (request.modelName.isEmpty())
        return found;
    const QFileInfoList files = QDir(in).entryInfoList({QStringLiteral("*.bin")}, QDir::Files, QDir::Name);
    for (const QFileInfo &each : files) {
        QFile file(each.filePath());
        // Unbuffered: a buffer would be filled with some of what lies behind the header, too.
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
            qWarning() << "a firmware image could not be opened:" << each.filePath() << file.errorString();
            continue;
        }
        const Candidate candidate{each.filePath(), file.read(FirmwareImages::headerSize), each.size(),
                                  each.lastModified()};
        const auto header = FirmwareImages::readHeader(candidate.header);
        if (!header || candidate.size > FirmwareImages::largestFile) {
            qWarning() << "no firmware image has this size:" << candidate.path << candidate.size;
            continue;
        }
        if (!isMeant(*header, request))
            continue;
        const FirmwareImages::Verdict verdict =
            FirmwareImages::judge(deviceVersion, FirmwareImages::versionText(header->version));
        if (verdict == FirmwareImages::Verdict::Stop)
            break;
        if (verdict == FirmwareImages::Verdict::Take)
            found << candidate;
    }
    return found;
}

/** The whole file; empty if it isn't the one any more whose header was read. */
QByteArray readWhole(const Candidate &candidate)
{
    QFile file(candidate.path);
    QByteArray content;
    if (file.open(QIODevice::ReadOnly))
        content = file.read(candidate.size + 1); // one more than there was shows that it grows
    const bool isWhole = content.size() == candidate.size && content.startsWith(candidate.header);
    if (isWhole && candidate.isStill(QFileInfo(candidate.path)))
        return content;
    qWarning() << "a firmware image is not used, it changed while it was read:" << candidate.path;
    return {};
}

FirmwareImages::Request request(int target, int modelIndex, const char *nameKey)
{
    const QString name = ConfigStore::instance()->value(ModelData::section(modelIndex), QLatin1String(nameKey));
    return {target, name, ModelData::companyId().value_or(-1), ModelData::modelId(modelIndex)};
}

} // namespace

std::optional<FirmwareImages::Header> FirmwareImages::readHeader(const QByteArray &bytes)
{
    if (bytes.size() < headerSize)
        return std::nullopt;
    const auto byteAt = [&bytes](int at) { return static_cast<std::uint8_t>(bytes.at(at)); };
    Header header;
    for (int index = 3; index >= 0; --index)
        header.version = header.version << 8 | byteAt(versionAt + index);
    header.target = byteAt(targetAt);
    header.cid = byteAt(cidAt);
    header.mid = byteAt(midAt);
    // A name as long as its field has no zero behind it.
    QByteArray name = bytes.mid(nameAt, nameSize);
    if (const int end = name.indexOf('\0'); end >= 0)
        name.truncate(end);
    header.modelName = QString::fromLocal8Bit(name);
    return header;
}

QString FirmwareImages::versionText(std::uint32_t version)
{
    return QStringLiteral("v%1.%2").arg(version >> 8).arg(version & 0xffU, 0, 16);
}

FirmwareImages::Request FirmwareImages::mouseRequest(int modelIndex) { return request(MouseTarget, modelIndex, "MM"); }

FirmwareImages::Request FirmwareImages::receiverRequest(int modelIndex, int updateClass)
{
    const char *const key = updateClass == 1 ? "DM" : updateClass == 2 ? "D2M" : updateClass == 4 ? "D4M" : "";
    Request made = request(ReceiverTarget, modelIndex, key);
    if (!*key)
        made.modelName.clear();
    return made;
}

FirmwareImages::Verdict FirmwareImages::judge(const QString &deviceVersion, const QString &imageVersion)
{
    if (deviceVersion.isEmpty())
        return Verdict::Take;
    const QString device = withoutV(deviceVersion);
    const QString image = withoutV(imageVersion);
    if (device == image)
        return Verdict::Skip;
    return device.toDouble() > image.toDouble() ? Verdict::Stop : Verdict::Take;
}

bool FirmwareImages::FindImage(const Request &request, const QString &deviceVersion, QList<QByteArray> &selected,
                               const QString &in)
{
    selected.clear();
    const QList<Candidate> found = candidates(request, deviceVersion, in);
    for (int index = found.size() - 1; index >= 0 && selected.isEmpty(); --index) {
        const QByteArray content = readWhole(found.at(index));
        if (!content.isEmpty())
            selected << content;
    }
    return !selected.isEmpty();
}

bool FirmwareImages::CheckUpdate(const Request &request, const QString &deviceVersion, const QString &in)
{
    return !deviceVersion.isEmpty() && !candidates(request, deviceVersion, in).isEmpty();
}
