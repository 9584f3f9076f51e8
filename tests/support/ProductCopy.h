#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

#include <functional>

/**
 * A copy of the running test program with the product's data beside it, in a folder of its own, in which a test damages
 * what it likes. The program finds its data beside its executable, so only a copy can have other data.
 */
class ProductCopy
{
public:
    struct Result
    {
        int exitCode = -1; ///< -1 when it crashed or hung
        QString told;      ///< what the test function gave to tell()
        QByteArray log;    ///< standard error; behind it all output when it failed
    };

    ProductCopy();

    /** Full path of a file beside the copy. */
    QString path(const QString &name) const { return folder.filePath(name); }
    /** Changes the content of a file beside the copy; an empty one removes it. */
    void change(const QString &name, const std::function<QByteArray(QByteArray)> &changed);
    /** Runs one test function in the copy. */
    Result run(const QString &testFunction, int milliseconds = 60000);

    /** Runs the copy with the arguments of this program, its output in place of this one's. \return its exit code. */
    int runInstead();

    /** True inside a copy. */
    static bool isCopy();
    /** Inside a copy: gives a line to the test that runs it. */
    static void tell(const QString &line);

private:
    QTemporaryDir folder;
    QString program;
};
