#include "portwire/control/ControlClient.h"

#include <QCoreApplication>
#include <QFile>

#include <cstdio>
#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#endif

namespace {

const char usage[] =
    "usage: portwirectl COMMAND [ARGUMENT...]\n"
    "Drives the virtual bus of the program that runs. The output is JSON.\n\n"
    "  devices                          lists every device\n"
    "  record ID                        the 10,428-byte record as the mouse holds it, raw\n"
    "  add MODEL LINK                   q1, q2 or unknown on cable, 1k, 2k or 4k; gives the id\n"
    "  add receiver CLASS MODEL         1k, 2k or 4k, sold with that model, without a mouse; gives the id\n"
    "  remove ID                        a mouse with its receiver, or a receiver, less\n"
    "  plug ID, unplug ID               a receiver, or the cable of a mouse\n"
    "  sleep ID, wake ID                the mouse\n"
    "  press ID SLOT [MS]               a button of the mouse, 0 to 15, held for 50 or MS milliseconds of its own\n"
    "                                   clock; gives the events, one a line\n"
    "  play ID SLOT:DOWN-UP...          several buttons on one time line, such as 2:0-50 0:1200-1250\n"
    "  flash ID FILE                    10,428 bytes into its flash, whatever they say\n"
    "  dpi ID LEVEL                     another DPI level, from 0, chosen on the mouse\n"
    "  rate ID CODE                     8, 4, 2, 1, 16, 32 for 125 to 4000 Hz\n"
    "  profile ID N                     another stored profile, 0 to 3\n"
    "  battery ID PERCENT [charging]    another charge\n"
    "  pairing ID [SECONDS]             the mouse looks for a receiver, as after three buttons were held; for 30 s\n"
    "  receiver-light ID MODE           another program sets what a 4K receiver shows, 0 to 3\n"
    "  long-range ID 0|1                likewise the long range of a receiver\n"
    "  reset-button ID                  a factory reset made on the mouse\n"
    "  fault ID KIND [N [AFTER [REPORTS]]]\n"
    "                                   drop, stall, garbage or short for N reports, after AFTER good ones; of the\n"
    "                                   answers, the requests or the announcements\n"
    "  fault ID powerloss PERCENT       the next upgrade loses its power there, 0 to 100; plug brings the device back\n"
    "  boot ID                          the device restarts in boot mode, as after a broken upgrade\n"
    "  firmware ID [VERSION]            its firmware version, or another one, such as 1.c\n"
    "  latency ID MS                    how long what the device sends is on its way; 0 for not at all\n"
    "  stats                            counts of reports\n";

/** The words for the program, which reads no file for anyone: its content takes the place of the name. */
QStringList withContent(QStringList words, QString &error)
{
    constexpr qint64 recordSize = 10428;
    if (words[0] != QLatin1String("flash") || words.size() != 3)
        return words;
    QFile file(words[2]);
    if (!file.open(QIODevice::ReadOnly)) {
        error = QStringLiteral("can't read %1: %2").arg(words[2], file.errorString());
        return {};
    }
    const QByteArray content = file.read(recordSize + 1);
    if (content.size() != recordSize)
        error = QStringLiteral("%1 doesn't have the %2 bytes of a record").arg(words[2]).arg(recordSize);
    words[2] = QString::fromLatin1(content.toBase64());
    return words;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList words = QCoreApplication::arguments().mid(1);
    if (words.isEmpty() || words[0] == QLatin1String("--help")) {
        std::fputs(usage, words.isEmpty() ? stderr : stdout);
        return words.isEmpty() ? 1 : 0;
    }
    QString error;
    const QStringList sent = withContent(words, error);
    const portwire::ControlClient::Reply reply =
        error.isEmpty() ? portwire::ControlClient().call(sent) : portwire::ControlClient::Reply{{}, error};
    if (!reply.isGood()) {
        std::fprintf(stderr, "portwirectl: %s\n", qPrintable(reply.error));
        return 1;
    }
#ifdef _WIN32
    _setmode(_fileno(stdout), _O_BINARY); // a record is bytes, of which none is the end of a line
#endif
    std::fwrite(reply.output.constData(), 1, static_cast<std::size_t>(reply.output.size()), stdout);
    return std::fflush(stdout) == 0 ? 0 : 1;
}
