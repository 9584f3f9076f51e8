#pragma once

#include <QString>

#include <array>

/** The models as their makers call them: names and no texts, the same in all languages. */
namespace ModelNames {

constexpr std::array<const char *, 2> names = {"Halvarion Q1", "Halvarion Q2"};

/** \param model 0 for the model with `MID` 1, 1 for the one with `MID` 2; any other has no name */
inline QString of(int model)
{
    const bool isNamed = model >= 0 && model < static_cast<int>(names.size());
    return isNamed ? QString::fromLatin1(names[static_cast<std::size_t>(model)]) : QString();
}

} // namespace ModelNames
