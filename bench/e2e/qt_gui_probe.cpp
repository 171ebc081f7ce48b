// Does nothing but make sure Qt Gui (and with it Qt Core) is loaded: its run time is the start-up of
// a program that links the Qt image loader, as the packager does.

#include <QImage>

int main()
{
    QImage const image;
    return image.isNull() ? 0 : 1;
}
