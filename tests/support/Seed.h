#pragma once

#include <QRandomGenerator>

/** Of a test that does anything at any moment: a new one each time, or HALVARION_SEED. It is printed. */
inline quint32 testSeed()
{
    bool isGiven = false;
    const int given = qEnvironmentVariableIntValue("HALVARION_SEED", &isGiven);
    const quint32 seed = isGiven ? quint32(given) : QRandomGenerator::global()->generate() & 0x7fffffffU;
    qInfo("HALVARION_SEED=%u", seed);
    return seed;
}

/** HALVARION_ROUNDS, and this many at least. */
inline int testRounds(int least) { return qMax(least, qEnvironmentVariableIntValue("HALVARION_ROUNDS")); }
