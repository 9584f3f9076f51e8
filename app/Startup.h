#pragma once

/**
 * The whole life of the process: prepares the per-user tree, prunes old logs and dumps, refuses a second copy, shows
 * the top window and runs the event loop until the program ends. \return the event loop's exit code, or 0 when another
 * copy is running.
 */
int runProgram(int &argc, char **argv);
