// The Tools menu's modeless windows. Each registers itself in the modeless dialog table, so the
// message loop gives it its keys first, and leaves the table when it closes.
#pragma once
#include <windows.h>

// Command 46: a further integer calculator, cascaded from the ones already open, with the active
// editor's selection evaluated at once.
void ShowIntCalculator(HWND frame);
// Command 24: the one error lookup window, brought to the front when it is open.
void ShowErrorLookup(HWND frame);
// Command 47: a further precision calculator, cascaded, in the style last chosen.
void ShowRealCalculator(HWND frame);
// Command 28: the binary-to-source dialog (modal); the written file opens in an editor when the
// dialog's check box says so.
void ShowBinaryToSource(HWND frame);
// Command 118: the project into "NAME.zip" beside its project file, with a progress window; an
// existing archive is replaced only when the user agrees. Ends with a summary.
struct Project;
// Command 27: the coding-style dialog, then the chosen file in a new editor converted to the
// style (the file on disk unchanged).
void ShowStyleConversion(HWND frame);
void CompressProjectWithProgress(HWND owner, const Project* project);

// Command 29: the one string code view, following the active editor's selection while open.
void ShowStringCodeView(HWND frame);
// Command 25: the one linear equation calculator, solving as the equations are typed.
void ShowLinearEquations(HWND frame);

// Shared by the tool windows: the input edit across the top and the output edit filling the rest
// of the client area, with the template's margins.
void LayOutToolEdits(HWND dialog);
// The minimum tracking size in pixels.
void LimitToolTracking(LPARAM minMaxInfo, int width, int height);
// A calculator of a cascade, for every message before the window's own handling: the first one
// open keeps its place in "DlgPos", each further one stands a step right and down from where
// that place puts it. `open` counts the open windows of the kind; WM_DESTROY counts one off.
void PlaceCascaded(HWND dialog, UINT message, int* open);
// The calculators' two-colour background over the whole client area.
void PaintCalcBackground(HWND dialog, HDC dc);
// What both calculators do alike: the minimum tracking size, the edits following a new size and
// the background. True when the message was one of these.
bool CalcFrameMessage(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam);
// Output text in the internal form (UTF-8) into a control.
void SetToolOutput(HWND dialog, const char* text);

struct EditDocument;
// Command 39: the port dialog; on OK the terminal document it names is opened or activated.
void OpenTerminalWindow(HWND frame);
// The editor's terminal opener: the document's own window owns the port's notices.
bool OpenTerminalForDocument(void* context, EditDocument* document, const char* specification);
// The port's notice (WM_APP + 1000) in a terminal document's window.
void TerminalWindowNotice(HWND window, WPARAM wParam);
