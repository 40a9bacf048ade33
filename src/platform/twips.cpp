#include <PanelKestrin/twips.h>

#include <QGuiApplication>
#include <QPaintDevice>
#include <QScreen>
#include <cmath>

namespace PanelKestrin {

namespace {

constexpr double FallbackDpi = 96.0; // no device and no screen (a console host)

double dpiX(const QPaintDevice *device)
{
    if (device)
        return device->logicalDpiX();
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchX() : FallbackDpi;
}

double dpiY(const QPaintDevice *device)
{
    if (device)
        return device->logicalDpiY();
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? screen->logicalDotsPerInchY() : FallbackDpi;
}

int rounded(double value)
{
    return static_cast<int>(std::lround(value));
}

} // namespace

double TwipsPerPixelX(const QPaintDevice *device)
{
    return TwipsPerInch / dpiX(device);
}

double TwipsPerPixelY(const QPaintDevice *device)
{
    return TwipsPerInch / dpiY(device);
}

int PixelsToTwipsX(int pixels, const QPaintDevice *device)
{
    return rounded(pixels * TwipsPerPixelX(device));
}

int PixelsToTwipsY(int pixels, const QPaintDevice *device)
{
    return rounded(pixels * TwipsPerPixelY(device));
}

int TwipsToPixelsX(double twips, const QPaintDevice *device)
{
    return rounded(twips / TwipsPerPixelX(device));
}

int TwipsToPixelsY(double twips, const QPaintDevice *device)
{
    return rounded(twips / TwipsPerPixelY(device));
}

} // namespace PanelKestrin
