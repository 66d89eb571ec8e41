#pragma once

struct MainWindowParts;
class UserPrompt;

// Gives the parts the windows that the main window opens for downloads and conversions. The prompt
// outlives the main window.
void setDialogs(MainWindowParts &parts, UserPrompt &prompt);
