// Does nothing but make sure Qt Core is loaded: its run time is the start-up of a program that
// links Qt Core, as the packager does for its commands writer.

#include <QtGlobal>

int main() { return qVersion()[0] == '5' ? 0 : 1; }
