#pragma once

#include <memory>

class frmMain;
class RegistoForms;

namespace modMain {

// Makes every form that the menu can name known.
void registarForms(RegistoForms &forms);

// The process entry once there is an application: language, splash, main window. The caller keeps the window alive
// while events run. Null when the start failed; the failure has been reported.
std::unique_ptr<frmMain> Main();

} // namespace modMain
