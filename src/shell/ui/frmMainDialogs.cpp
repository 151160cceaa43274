// The dialogs of the main window.
#include "link/TestRun.h"
#include "shell/ui/frmMain.h"

void frmMain::mnuTestDevice_Click()
{
    m_testRun->OpenFirstDeviceFound();
}

void frmMain::showSettings() {}
void frmMain::unloadSettings() {}
void frmMain::unloadDeviceChooser() {}
void frmMain::unloadDeviceWindows() {}
