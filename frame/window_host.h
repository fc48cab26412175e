// The window side of the core's host: questions from core code become the program's message boxes.
#pragma once

void InstallWindowHost();
