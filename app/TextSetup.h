#pragma once

/**
 * Makes file names UTF-8 whatever the locale says. With the C locale Qt takes them for Latin-1 and can't open the
 * Chinese language files. Before anything touches a file; nothing to do on Windows, which has Unicode names of its own.
 */
void useUtf8FileNames();

/** Sets the family of all text, with substitutes where it isn't installed. Once, after the application is made. */
void setUpFonts();
