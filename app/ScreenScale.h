#pragma once

/**
 * Lets the user's scaling of each screen, 125 % as well as 200 %, hold for all that the program shows, as far as its
 * window fits. Before the application is made.
 */
void useScreenScale();
