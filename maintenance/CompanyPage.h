#pragma once

#include <QString>

class QIODevice;

/** The maker of the product, as "Language/Net.xml" beside the executable names it. Empty texts are unknown. */
struct CompanyPage
{
    QString name;
    QString address; ///< of the page on the web
};

/** What the file says for a language. A missing or damaged file leaves unknown what it doesn't tell; the log says why.
 */
CompanyPage readCompanyPage(int language);
/** The same from an open file or buffer. */
CompanyPage readCompanyPageFrom(QIODevice &xml, int language);

/**
 * True for a whole address that a browser opens: http or https with a host. The file can be edited by anyone, and other
 * schemes make the desktop start other programs.
 */
bool isWebAddress(const QString &address);
