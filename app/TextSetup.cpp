#include "app/TextSetup.h"

#include <QApplication>
#include <QFont>
#include <QTextCodec>

void useUtf8FileNames()
{
#ifndef Q_OS_WIN
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
#endif
}

void setUpFonts()
{
    const QString family = QStringLiteral("微软雅黑");
    // The family is a Windows one. The substitutes hold Latin, Cyrillic, Chinese, Korean and Japanese.
    QFont::insertSubstitutions(family, {QStringLiteral("Microsoft YaHei"), QStringLiteral("Noto Sans CJK SC"),
                                        QStringLiteral("Noto Sans"), QStringLiteral("DejaVu Sans")});
    QFont font(family, 9);
    font.setStyleStrategy(QFont::PreferAntialias);
    QApplication::setFont(font);
}
