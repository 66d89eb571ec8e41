#pragma once

class QString;
class UserPrompt;

// Shows a folder in the file manager of the desktop. If it can't be shown the user is told.
void openFolder(const QString &folder, UserPrompt &prompt);
