#pragma once

#include <QString>

class MainWindow;

// The scripted tour run when there is no display: opens the main window and every form and
// writes a screenshot of each to folder, then writes the demo's reports there (tourreports.h).
// Returns the process exit code.
int runTour(MainWindow &window, const QString &folder);
