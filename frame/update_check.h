// The new-version check: at start, when "ChkNewVersionFg" is set, a small version text is fetched
// from the logo's server in the background; a newer version than the program's is offered once.
#pragma once
#include <windows.h>

// Sent to the frame when the background fetch has ended.
constexpr UINT kMsgUpdateChecked = WM_APP + 19;

// Starts the fetch; never waits for the server.
void StartUpdateCheck(HWND frame);
// The frame's answer to kMsgUpdateChecked: asks about a newer version not asked about before.
void FinishUpdateCheck(HWND frame);
// Shutdown: stops a fetch still under way and waits for its thread (bounded by the time-outs).
void StopUpdateCheck();
