#pragma once

#include <QTest>

/** Rows of a data-driven test: made with the names of its columns, then called with the name and values of each row. */
template<typename... Values>
class Rows
{
public:
    template<typename... Names>
    explicit Rows(Names... names)
    {
        (QTest::addColumn<Values>(names), ...);
    }

    void operator()(const char *name, const Values &...values) const { (QTest::newRow(name) << ... << values); }
};
