#include "frame/project_window.h"

#include <commctrl.h>

#include <cstdio>
#include <cstring>

#include "editor/document.h"
#include "foundation/diagnostics.h"
#include "foundation/file_dialogs.h"
#include "foundation/fileutil.h"
#include "foundation/formatter.h"
#include "foundation/host.h"
#include "foundation/language.h"
#include "foundation/memory.h"
#include "foundation/os_profile.h"
#include "foundation/path.h"
#include "foundation/settings.h"
#include "foundation/system_text.h"
#include "frame/dialog_support.h"
#include "frame/editor_child.h"
#include "frame/frame_commands.h"
#include "frame/frame_state.h"
#include "frame/frame_window.h"
#include "frame/session_layout.h"
#include "frame/session_list.h"
#include "frame/tool_windows.h"
#include "project/make_target.h"
#include "project/project.h"
#include "project/project_file.h"
#include "project/project_host.h"
#include "project/project_tree.h"
#include "project/target_templates.h"
#include "project/text_lines.h"
#include "resources/resource.h"

const wchar_t kProjectClassName[] = L"QuillProject";

namespace {

constexpr int kOwnerProjectWindow = 6010;  // the window's record with its project
constexpr int kOwnerDialogText = 6011;     // a multi-line field of the target dialog

constexpr int kMsgNeedFolder = 90;
constexpr int kMsgEnterFolder = 91;
constexpr int kMsgEnterProjectName = 92;
constexpr int kMsgEnterTargetName = 95;
constexpr int kMsgRemoveTarget = 97;
constexpr int kMsgModifyTarget = 98;
constexpr int kMsgSelectTarget = 99;
constexpr int kMsgOpenTitle = 82;
constexpr int kMsgSaveAsTitle = 83;
constexpr int kMsgAlreadyThere = 116;

// The project named on the command line or remembered in the settings, until it is opened.
char g_startProject[kPathSize];

const char kProjectFilter[] = "Project File\0*.prj\0";
const wchar_t* const kCompilers[] = {L"VC9", L"VC15"};

struct ProjectWindow {
  Project project;
  HWND window;
  HWND tree;
  HIMAGELIST images;
  // Dragging in the tree.
  bool dragging;
  HTREEITEM dragItem;
  HTREEITEM dropItem;
  HIMAGELIST dragImage;
};

ProjectWindow* WindowData(HWND window) {
  return reinterpret_cast<ProjectWindow*>(GetWindowLongPtrW(window, 0));
}

// ---- Pictures

// One 16 x 16 picture a kind: a folder-like box for targets, a page with a coloured letter for
// each kind of file.
void DrawPicture(HDC dc, int index, HFONT font) {
  int x = index * 16;
  struct Look {
    const wchar_t* letter;
    COLORREF colour;
  };
  static const Look kLooks[kImageCount] = {
      {L"", RGB(0xD8, 0xA8, 0x20)},  {L"C", RGB(0x20, 0x40, 0xC0)}, {L"+", RGB(0x20, 0x80, 0x40)},
      {L"H", RGB(0x80, 0x20, 0xA0)}, {L"A", RGB(0xA0, 0x40, 0x20)}, {L"R", RGB(0xC0, 0x20, 0x40)},
      {L"", RGB(0x80, 0x80, 0x80)}};
  const Look& look = kLooks[index];
  RECT all = {x, 0, x + 16, 16};
  FillRect(dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
  HBRUSH fill = CreateSolidBrush(look.colour);
  HPEN pen = CreatePen(PS_SOLID, 1, RGB(0x40, 0x40, 0x40));
  HGDIOBJ oldPen = SelectObject(dc, pen);
  if (index == kImageTarget) {
    HGDIOBJ oldBrush = SelectObject(dc, fill);
    Rectangle(dc, x + 1, 3, x + 15, 14);
    Rectangle(dc, x + 1, 2, x + 7, 5);
    SelectObject(dc, oldBrush);
  } else {
    HGDIOBJ oldBrush = SelectObject(dc, GetStockObject(WHITE_BRUSH));
    Rectangle(dc, x + 2, 0, x + 14, 16);
    SelectObject(dc, oldBrush);
    RECT band = {x + 3, 1, x + 13, 4};
    FillRect(dc, &band, fill);
    HGDIOBJ oldFont = SelectObject(dc, font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, look.colour);
    RECT text = {x + 2, 4, x + 14, 16};
    DrawTextW(dc, look.letter, -1, &text, DT_CENTER | DT_SINGLELINE | DT_VCENTER);
    SelectObject(dc, oldFont);
  }
  SelectObject(dc, oldPen);
  DeleteObject(pen);
  DeleteObject(fill);
}

HIMAGELIST MakeImages() {
  HIMAGELIST images = ImageList_Create(16, 16, ILC_COLOR16, 6, 2);
  if (!images) return nullptr;
  HDC screen = GetDC(nullptr);
  HDC dc = CreateCompatibleDC(screen);
  HBITMAP strip = CreateCompatibleBitmap(screen, 16 * kImageCount, 16);
  HGDIOBJ old = SelectObject(dc, strip);
  HFONT font = CreateFontW(-11, 0, 0, 0, FW_BOLD, 0, 0, 0, DEFAULT_CHARSET, 0, 0, 0, 0, L"Arial");
  for (int i = 0; i < kImageCount; ++i)
    DrawPicture(dc, i, font);
  SelectObject(dc, old);
  DeleteObject(font);
  ImageList_Add(images, strip, nullptr);
  DeleteObject(strip);
  DeleteDC(dc);
  ReleaseDC(nullptr, screen);
  return images;
}

// ---- Texts

void Widen(const char* text, wchar_t* wide, int size) {
  if (!MultiByteToWideChar(CP_UTF8, 0, text, -1, wide, size)) wide[0] = L'\0';
}

void ShowProjectTitle(ProjectWindow* data) {
  wchar_t title[kPathSize];
  if (data->project.path[0]) {
    Widen(data->project.path, title, kPathSize);
    for (wchar_t* p = title; *p; ++p) {
      if (*p == L'/') *p = L'\\';
    }
  } else {
    wcscpy(title, L"Project");
  }
  SetWindowTextW(data->window, title);
  SendMessageW(g_frame.mdiClient, WM_MDIREFRESHMENU, 0, 0);
  DrawMenuBar(g_frame.frame);
}

// ---- The tree

HTREEITEM InsertNode(HWND tree, HTREEITEM parent, const char* text, int image, void* record) {
  wchar_t wide[kPathSize];
  Widen(text, wide, kPathSize);
  TVINSERTSTRUCTW insert = {};
  insert.hParent = parent ? parent : TVI_ROOT;
  insert.hInsertAfter = TVI_LAST;
  insert.item.mask = TVIF_TEXT | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_PARAM;
  insert.item.pszText = wide;
  insert.item.iImage = image;
  insert.item.iSelectedImage = image;
  insert.item.lParam = reinterpret_cast<LPARAM>(record);
  return reinterpret_cast<HTREEITEM>(
      SendMessageW(tree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
}

void* ItemRecord(HWND tree, HTREEITEM item) {
  TVITEMW get = {};
  get.mask = TVIF_PARAM;
  get.hItem = item;
  if (!SendMessageW(tree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&get))) return nullptr;
  return reinterpret_cast<void*>(get.lParam);
}

// Target nodes sit at the top and carry their target; file nodes carry their file.
bool NodeOf(HWND tree, HTREEITEM item, TreeNode* node) {
  if (!item) return false;
  HTREEITEM parent = TreeView_GetParent(tree, item);
  if (parent) {
    node->target = static_cast<ProjectTarget*>(ItemRecord(tree, parent));
    node->file = static_cast<ProjectFile*>(ItemRecord(tree, item));
  } else {
    node->target = static_cast<ProjectTarget*>(ItemRecord(tree, item));
    node->file = nullptr;
  }
  return node->target != nullptr;
}

HTREEITEM InsertTarget(ProjectWindow* data, ProjectTarget* target) {
  char label[kTargetNameSize + 16];
  FormatTargetLabel(target, label, sizeof label);
  HTREEITEM item = InsertNode(data->tree, nullptr, label, kImageTarget, target);
  target->treeItem = item;
  return item;
}

HTREEITEM InsertFile(ProjectWindow* data, ProjectTarget* target, ProjectFile* file) {
  return InsertNode(data->tree, static_cast<HTREEITEM>(target->treeItem), file->path,
                    ProjectFileImage(file->path), file);
}

HTREEITEM FindChild(HWND tree, HTREEITEM parent, const void* record) {
  for (HTREEITEM child = TreeView_GetChild(tree, parent); child;
       child = TreeView_GetNextSibling(tree, child)) {
    if (ItemRecord(tree, child) == record) return child;
  }
  return nullptr;
}

// The whole tree from the project; `select` names the node to select afterwards.
void FillTree(ProjectWindow* data, const TreeNode* select) {
  HWND tree = data->tree;
  SendMessageW(tree, WM_SETREDRAW, FALSE, 0);
  // Targets that were open stay open.
  constexpr int kKeptOpen = 64;
  const void* open[kKeptOpen];
  int opened = 0;
  for (HTREEITEM item = TreeView_GetRoot(tree); item && opened < kKeptOpen;
       item = TreeView_GetNextSibling(tree, item)) {
    if (TreeView_GetItemState(tree, item, TVIS_EXPANDED) & TVIS_EXPANDED)
      open[opened++] = ItemRecord(tree, item);
  }
  TreeView_DeleteAllItems(tree);
  HTREEITEM selected = nullptr;
  for (ProjectTarget* target = data->project.targets; target; target = target->next) {
    HTREEITEM item = InsertTarget(data, target);
    if (select && select->target == target && !select->file) selected = item;
    for (ProjectFile* file = target->files; file; file = file->next) {
      HTREEITEM child = InsertFile(data, target, file);
      if (select && select->file == file) selected = child;
    }
    bool wasOpen = false;
    for (int i = 0; i < opened; ++i)
      wasOpen = wasOpen || open[i] == target;
    if (wasOpen || (select && select->target == target)) TreeView_Expand(tree, item, TVE_EXPAND);
  }
  if (data->project.targets && !data->project.targets->next)
    TreeView_Expand(tree, static_cast<HTREEITEM>(data->project.targets->treeItem), TVE_EXPAND);
  if (selected) TreeView_SelectItem(tree, selected);
  SendMessageW(tree, WM_SETREDRAW, TRUE, 0);
  InvalidateRect(tree, nullptr, TRUE);
}

bool SelectedNode(ProjectWindow* data, TreeNode* node) {
  return NodeOf(data->tree, TreeView_GetSelection(data->tree), node);
}

// The target a command means; string 99 when none is selected.
ProjectTarget* CommandTargetOrAsk(ProjectWindow* data) {
  TreeNode node;
  ProjectTarget* target = CommandTarget(SelectedNode(data, &node) ? &node : nullptr);
  if (!target) HostMessageId(kMsgSelectTarget, kMbOk | kMbIconExclamation, nullptr);
  return target;
}

// ---- Commands

bool SaveProjectAs(ProjectWindow* data) {
  char path[kPathSize];
  strcpy(path, data->project.path);
  if (!AskSaveFileName(data->window, path, sizeof path, GetStr(kMsgSaveAsTitle), kProjectFilter,
                       nullptr, 0, "prj")) {
    return false;
  }
  strcpy(data->project.path, path);
  bool saved = SaveProject(&data->project);
  ShowProjectTitle(data);
  return saved;
}

bool SaveOrAsk(ProjectWindow* data) {
  if (!data->project.path[0]) return SaveProjectAs(data);
  return SaveProject(&data->project);
}

void AddFile(ProjectWindow* data, const char* path) {
  ProjectTarget* target = CommandTargetOrAsk(data);
  if (!target || !path || !path[0]) return;
  ProjectFile* file = nullptr;
  AddFileResult result = AddProjectFile(&data->project, target, path, &file);
  HTREEITEM item = nullptr;
  if (result == AddFileResult::kAdded) {
    item = InsertFile(data, target, file);
  } else if (result == AddFileResult::kAlreadyListed) {
    item = FindChild(data->tree, static_cast<HTREEITEM>(target->treeItem), file);
  }
  if (item) TreeView_SelectItem(data->tree, item);
}

// The file of the editor window nearest the top.
const char* ActiveDocumentPath() {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const EditDocument* document = EditorWindowDocument(child);
    if (document && !document->untitled) return document->path;
  }
  return nullptr;
}

// The full path of a file of the project: a relative one is taken from the project's folder.
bool ProjectFilePath(const Project* project, const char* path, char* full, int size) {
  bool absolute = path[0] == '/' || (path[0] && path[1] == ':');
  if (absolute) return FormatStr(full, size, "%s", path) <= size;
  char folder[kPathSize];
  if (ProjectFolder(project, folder, sizeof folder) < 0) return false;
  return FormatStr(full, size, "%s%s%s", folder, folder[0] ? "/" : "", path) <= size;
}

void OpenSelectedFile(ProjectWindow* data) {
  TreeNode node;
  if (!SelectedNode(data, &node) || !node.file) return;
  char full[kPathSize];
  if (ProjectFilePath(&data->project, node.file->path, full, sizeof full))
    OpenOrActivateDocument(full, nullptr, 0, 0);
}

void RemoveSelected(ProjectWindow* data) {
  HTREEITEM item = TreeView_GetSelection(data->tree);
  TreeNode node;
  if (!NodeOf(data->tree, item, &node)) {
    HostMessageId(kMsgSelectTarget, kMbOk | kMbIconExclamation, nullptr);
    return;
  }
  if (node.file) {
    TreeView_DeleteItem(data->tree, item);
    RemoveProjectFile(&data->project, node.target, node.file);
    return;
  }
  if (HostMessageId(kMsgRemoveTarget, kMbOkCancel | kMbIconQuestion, node.target->name) != kIdOk)
    return;
  TreeView_DeleteItem(data->tree, item);
  RemoveTarget(&data->project, node.target);
}

void Build(ProjectWindow* data, BuildMode mode) {
  if (ProjectTarget* target = CommandTargetOrAsk(data)) MakeTarget(&data->project, target, mode);
}

// ---- The target dialog

struct TargetDialog {
  ProjectTarget* target;
  bool modify;
};

struct TextField {
  int id;
  size_t offset;  // of the char* field in ProjectTarget
};
const TextField kTextFields[] = {
    {IDC_MAKE_START, offsetof(ProjectTarget, makeStart)},
    {IDC_ADD_COMPILE, offsetof(ProjectTarget, addCompile)},
    {IDC_C_OPTION, offsetof(ProjectTarget, cOption)},
    {IDC_RC_OPTION, offsetof(ProjectTarget, rcOption)},
    {IDC_ASM_OPTION, offsetof(ProjectTarget, asmOption)},
    {IDC_LINK_OPTION, offsetof(ProjectTarget, linkOption)},
    {IDC_LIBRARIES, offsetof(ProjectTarget, libraries)},
    {IDC_DEFINES, offsetof(ProjectTarget, defines)},
    {IDC_INCLUDES, offsetof(ProjectTarget, includes)},
};
constexpr int kFieldUnits = kProjectTextLimit + 1;

char** FieldOf(ProjectTarget* target, const TextField& field) {
  return reinterpret_cast<char**>(reinterpret_cast<char*>(target) + field.offset);
}

void SetLongText(HWND dialog, int id, const char* text) {
  wchar_t* wide = static_cast<wchar_t*>(AllocMem(kFieldUnits * sizeof(wchar_t), kOwnerDialogText));
  if (!wide) return;
  Widen(text ? text : "", wide, kFieldUnits);
  SetDlgItemTextW(dialog, id, wide);
  FreeMem(wide);
}

void GetLongText(HWND dialog, int id, char** field) {
  wchar_t* wide = static_cast<wchar_t*>(AllocMem(kFieldUnits * sizeof(wchar_t), kOwnerDialogText));
  char* text = static_cast<char*>(AllocMem(kFieldUnits * 3, kOwnerDialogText));
  if (wide && text) {
    GetDlgItemTextW(dialog, id, wide, kFieldUnits);
    if (!WideCharToMultiByte(CP_UTF8, 0, wide, -1, text, kFieldUnits * 3, nullptr, nullptr))
      text[0] = '\0';
    SetTargetText(field, text);
  }
  FreeMem(wide);
  FreeMem(text);
}

void FillTargetDialog(HWND dialog, const TargetDialog* data) {
  const ProjectTarget* target = data->target;
  if (data->modify) {
    wchar_t title[128];
    Widen(GetStr(kMsgModifyTarget), title, 128);
    SetWindowTextW(dialog, title);
  }
  CheckRadio(dialog, IDC_TARGET_TYPE0, IDC_TARGET_TYPE0 + kTargetTypeCount - 1, target->type);
  CheckRadio(dialog, IDC_PLATFORM32, IDC_PLATFORM64, target->platform);
  CheckDlgButton(dialog, IDC_USE_DEFAULT_LIB, target->useDefaultLib ? BST_CHECKED : 0);
  CheckDlgButton(dialog, IDC_USE_KLIB, target->useKLib ? BST_CHECKED : 0);
  SendDlgItemMessageW(dialog, IDC_TARGET_NAME, EM_LIMITTEXT, kTargetNameSize - 1, 0);
  SetControlText(dialog, IDC_TARGET_NAME, target->name, false);
  for (const wchar_t* compiler : kCompilers)
    SendDlgItemMessageW(dialog, IDC_TARGET_COMPILER, CB_ADDSTRING, 0,
                        reinterpret_cast<LPARAM>(compiler));
  SendDlgItemMessageW(dialog, IDC_TARGET_COMPILER, CB_LIMITTEXT, kCompilerNameSize - 1, 0);
  SetControlText(dialog, IDC_TARGET_COMPILER, target->compiler, false);
  for (const TextField& field : kTextFields)
    SetLongText(dialog, field.id, *FieldOf(const_cast<ProjectTarget*>(target), field));
}

bool ReadTargetDialog(HWND dialog, ProjectTarget* target) {
  char name[kTargetNameSize * 3];
  GetControlText(dialog, IDC_TARGET_NAME, name, sizeof name, false);
  if (!name[0]) {
    HostMessageId(kMsgEnterTargetName, kMbOk | kMbIconExclamation, nullptr);
    SetFocus(GetDlgItem(dialog, IDC_TARGET_NAME));
    return false;
  }
  CopyLineCut(name, strlen(name), target->name, sizeof target->name);
  char compiler[kCompilerNameSize * 3];
  GetControlText(dialog, IDC_TARGET_COMPILER, compiler, sizeof compiler, false);
  CopyLineCut(compiler, strlen(compiler), target->compiler, sizeof target->compiler);
  if (!target->compiler[0]) strcpy(target->compiler, kDefaultCompiler);
  target->type = CheckedRadio(dialog, IDC_TARGET_TYPE0, IDC_TARGET_TYPE0 + kTargetTypeCount - 1);
  target->platform = CheckedRadio(dialog, IDC_PLATFORM32, IDC_PLATFORM64);
  target->useDefaultLib = IsDlgButtonChecked(dialog, IDC_USE_DEFAULT_LIB) == BST_CHECKED;
  target->useKLib = IsDlgButtonChecked(dialog, IDC_USE_KLIB) == BST_CHECKED;
  for (const TextField& field : kTextFields)
    GetLongText(dialog, field.id, FieldOf(target, field));
  return true;
}

INT_PTR CALLBACK TargetDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  TargetDialog* data = static_cast<TargetDialog*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG:
      FillTargetDialog(dialog, data);
      return TRUE;
    case WM_COMMAND:
      if (LOWORD(wParam) == IDOK) {
        if (ReadTargetDialog(dialog, data->target)) EndDialog(dialog, IDOK);
        return TRUE;
      }
      if (LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
        return TRUE;
      }
      break;
  }
  return FALSE;
}

void AddNewTarget(ProjectWindow* data) {
  ProjectTarget* target = NewDefaultTarget();
  if (!target) return;
  TargetDialog dialog = {target, false};
  if (RunDialog(data->window, IDD_TARGET, TargetDialogProc, &dialog) != IDOK) {
    FreeTarget(target);
    return;
  }
  StoreTargetDefaults(target);
  AppendTarget(&data->project, target);
  ProjectFile* last = nullptr;
  CopyTargetTemplates(&data->project, target, &last);
  TreeNode select = {target, last};
  FillTree(data, &select);
  // The target's main source is where the user starts typing.
  if (target->files) {
    char full[kPathSize];
    if (ProjectFilePath(&data->project, target->files->path, full, sizeof full))
      OpenOrActivateDocument(full, nullptr, 0, 0);
  }
}

void ModifyTarget(ProjectWindow* data) {
  ProjectTarget* target = CommandTargetOrAsk(data);
  if (!target) return;
  TargetDialog dialog = {target, true};
  if (RunDialog(data->window, IDD_TARGET, TargetDialogProc, &dialog) != IDOK) return;
  char label[kTargetNameSize + 16];
  FormatTargetLabel(target, label, sizeof label);
  wchar_t wide[kTargetNameSize + 16];
  Widen(label, wide, kTargetNameSize + 16);
  TVITEMW item = {};
  item.mask = TVIF_TEXT;
  item.hItem = static_cast<HTREEITEM>(target->treeItem);
  item.pszText = wide;
  SendMessageW(data->tree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item));
  data->project.modified = true;
}

void OnCommand(ProjectWindow* data, int id, LPARAM lParam) {
  switch (id) {
    case IDM_PRJ_SAVE:
      SaveOrAsk(data);
      break;
    case IDM_PRJ_SAVE_AS:
      SaveProjectAs(data);
      break;
    case IDM_PRJ_ADD_FILE:
      AddFile(data, ActiveDocumentPath());
      break;
    case kCmdAddFileToProject:
      AddFile(data, reinterpret_cast<const char*>(lParam));
      break;
    case IDM_PRJ_ADD_TARGET:
      AddNewTarget(data);
      break;
    case IDM_PRJ_MODIFY_TARGET:
      ModifyTarget(data);
      break;
    case IDM_PRJ_REMOVE:
      RemoveSelected(data);
      break;
    case IDM_PRJ_OPEN_FILE:
      OpenSelectedFile(data);
      break;
    case IDM_PRJ_COMPRESS:
      // The archive holds the project file as it is on disk.
      if (!data->project.modified || SaveOrAsk(data))
        CompressProjectWithProgress(data->window, &data->project);
      break;
    case IDM_BUILD_RUN:
      Build(data, BuildMode::kRun);
      break;
    case IDM_BUILD:
      Build(data, BuildMode::kBuild);
      break;
    case IDM_REBUILD:
      Build(data, BuildMode::kRebuild);
      break;
  }
}

// ---- Tree gestures

void ShowProjectMenu(ProjectWindow* data) {
  POINT cursor;
  GetCursorPos(&cursor);
  TVHITTESTINFO hit = {};
  hit.pt = cursor;
  ScreenToClient(data->tree, &hit.pt);
  HTREEITEM item = TreeView_HitTest(data->tree, &hit);
  if (!item) item = TreeView_GetDropHilight(data->tree);
  if (item) TreeView_SelectItem(data->tree, item);
  SendMessageW(g_frame.mdiClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(data->window), 0);
  // A maximised child puts its system menu in front of the frame's menus.
  HWND active = ActiveChild();
  int position = active && IsZoomed(active) ? 3 : 2;
  HMENU menu = GetSubMenu(GetMenu(g_frame.frame), position);
  if (menu)
    TrackPopupMenu(menu, TPM_LEFTALIGN | TPM_RIGHTBUTTON, cursor.x, cursor.y, 0, g_frame.frame,
                   nullptr);
}

void BeginDrag(ProjectWindow* data, const NMTREEVIEWW* info) {
  data->dragItem = info->itemNew.hItem;
  data->dropItem = nullptr;
  data->dragImage = TreeView_CreateDragImage(data->tree, data->dragItem);
  ShowCursor(FALSE);
  if (data->dragImage) {
    ImageList_BeginDrag(data->dragImage, 0, 0, 0);
    ImageList_DragEnter(data->tree, info->ptDrag.x, info->ptDrag.y);
  }
  SetCapture(data->window);
  data->dragging = true;
}

void DragMove(ProjectWindow* data, int x, int y) {
  POINT point = {x, y};
  MapWindowPoints(data->window, data->tree, &point, 1);
  if (data->dragImage) ImageList_DragMove(point.x, point.y);
  TVHITTESTINFO hit = {};
  hit.pt = point;
  HTREEITEM item = TreeView_HitTest(data->tree, &hit);
  if (item != data->dropItem) {
    if (data->dragImage) ImageList_DragShowNolock(FALSE);
    TreeView_SelectDropTarget(data->tree, item);
    if (data->dragImage) ImageList_DragShowNolock(TRUE);
    data->dropItem = item;
  }
}

void EndDrag(ProjectWindow* data) {
  data->dragging = false;
  if (data->dragImage) {
    ImageList_DragLeave(data->tree);
    ImageList_EndDrag();
    ImageList_Destroy(data->dragImage);
    data->dragImage = nullptr;
  }
  TreeView_SelectDropTarget(data->tree, nullptr);
  if (data->dropItem) TreeView_SelectItem(data->tree, data->dropItem);
  ReleaseCapture();
  ShowCursor(TRUE);
  TreeNode dragged, dropped;
  if (!NodeOf(data->tree, data->dragItem, &dragged)) return;
  bool hasDrop = NodeOf(data->tree, data->dropItem, &dropped);
  TreeDrop result = DropTreeNode(&data->project, dragged, hasDrop ? &dropped : nullptr);
  if (result == TreeDrop::kBeep) {
    MessageBeep(MB_OK);
  } else if (result != TreeDrop::kNothing) {
    if (dragged.file) dragged.target = hasDrop ? dropped.target : dragged.target;
    FillTree(data, &dragged);
  }
}

LRESULT OnNotify(ProjectWindow* data, NMHDR* header) {
  if (header->hwndFrom != data->tree) return 0;
  switch (header->code) {
    case TVN_BEGINDRAGW:
      BeginDrag(data, reinterpret_cast<NMTREEVIEWW*>(header));
      break;
    case TVN_KEYDOWN: {
      WORD key = reinterpret_cast<NMTVKEYDOWN*>(header)->wVKey;
      if (key == VK_INSERT) PostMessageW(data->window, WM_COMMAND, IDM_PRJ_ADD_FILE, 0);
      if (key == VK_DELETE) PostMessageW(data->window, WM_COMMAND, IDM_PRJ_REMOVE, 0);
      break;
    }
    case NM_RCLICK:
      ShowProjectMenu(data);
      return 1;
    case NM_DBLCLK:
    case NM_RETURN:
      PostMessageW(data->window, WM_COMMAND, IDM_PRJ_OPEN_FILE, 0);
      return 1;
  }
  return 0;
}

// ---- The window

void OnCreate(HWND window, ProjectWindow* data) {
  data->window = window;
  g_frame.projectWindow = window;
  data->tree = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"",
                               WS_CHILD | WS_VISIBLE | TVS_HASBUTTONS | TVS_HASLINES |
                                   TVS_LINESATROOT | TVS_SHOWSELALWAYS | TVS_FULLROWSELECT,
                               0, 0, 0, 0, window, reinterpret_cast<HMENU>(IDC_PROJECT_TREE),
                               g_frame.instance, nullptr);
  data->images = MakeImages();
  if (data->tree && data->images) TreeView_SetImageList(data->tree, data->images, TVSIL_NORMAL);
  data->project.tree = data->tree;
}

void OnDestroy(ProjectWindow* data) {
  if (data->images) ImageList_Destroy(data->images);
  data->images = nullptr;
  if (g_frame.projectWindow == data->window) g_frame.projectWindow = nullptr;
  HWND other = GetWindow(data->window, GW_HWNDNEXT) ? GetWindow(data->window, GW_HWNDNEXT)
                                                    : GetWindow(data->window, GW_HWNDPREV);
  UpdateMenuState(other ? 1 : 0, false);
}

LRESULT CALLBACK ProjectChildProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  ProjectWindow* data = WindowData(window);
  switch (message) {
    case WM_CREATE: {
      const CREATESTRUCTW* create = reinterpret_cast<const CREATESTRUCTW*>(lParam);
      const MDICREATESTRUCTW* mdi = static_cast<const MDICREATESTRUCTW*>(create->lpCreateParams);
      data = reinterpret_cast<ProjectWindow*>(mdi->lParam);
      SetWindowLongPtrW(window, 0, mdi->lParam);
      OnCreate(window, data);
      return 0;
    }
    case WM_SIZE:
      if (data && data->tree && wParam != SIZE_MINIMIZED)
        MoveWindow(data->tree, 0, 0, LOWORD(lParam), HIWORD(lParam), TRUE);
      break;  // the MDI default keeps a maximised child's menu in step
    case WM_SETFOCUS:
      if (data && data->tree) SetFocus(data->tree);
      return 0;
    case WM_CLOSE:
      SendMessageW(g_frame.frame, WM_COMMAND, kCmdCloseProject, 0);
      return 0;
    case WM_QUERYENDSESSION:
      // A project read only in part is saved only when the user asks.
      if (data && data->project.modified && !data->project.partial) SaveOrAsk(data);
      return 1;
    case WM_MDIACTIVATE:
      if (data && reinterpret_cast<HWND>(lParam) == window) UpdateMenuState(2, false);
      break;
    case WM_COMMAND:
      if (data && LOWORD(wParam) < kFirstChildId) OnCommand(data, LOWORD(wParam), lParam);
      return 0;
    case WM_NOTIFY:
      if (data) return OnNotify(data, reinterpret_cast<NMHDR*>(lParam));
      break;
    case WM_MOUSEMOVE:
      if (data && data->dragging)
        DragMove(data, static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
      return 0;
    case WM_LBUTTONUP:
      if (data && data->dragging) EndDrag(data);
      return 0;
    case WM_DESTROY:
      if (data) OnDestroy(data);
      break;
    case WM_NCDESTROY:
      if (data) {
        FreeProjectTargets(&data->project);
        FreeMem(data);
        SetWindowLongPtrW(window, 0, 0);
      }
      break;
  }
  return DefMDIChildProcW(window, message, wParam, lParam);
}

// ---- The project code's host

bool HasUnsavedSources(void*) {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const EditDocument* document = EditorWindowDocument(child);
    if (document && document->modified && !document->untitled) return true;
  }
  return false;
}

void SaveAllSources(void*) {
  for (HWND child = GetWindow(g_frame.mdiClient, GW_CHILD); child;
       child = GetWindow(child, GW_HWNDNEXT)) {
    const EditDocument* document = EditorWindowDocument(child);
    if (document && document->modified && !document->untitled && !GetWindow(child, GW_OWNER))
      SendMessageW(child, WM_COMMAND, IDM_SAVE, 0);
  }
}

bool StartBatch(void*, const char* commandLine, int show) {
  return StartProgram(commandLine, show);
}

// The document list is restored by whoever opens the window, once it exists.
void NoFileList(void*) {}

const ProjectHost kWindowHost = {nullptr, HasUnsavedSources, SaveAllSources, StartBatch,
                                 NoFileList};

// "Left Top Width Height Show" of "DocList"/"Project" in the project file; the default is the
// top-left corner, 300 wide and a fifth of the client high.
void ReadWindowPlace(const char* path, int* place) {
  // While the frame is being created the client is not laid out yet: take what it will get.
  RECT client;
  GetClientRect(g_frame.frame, &client);
  place[0] = 0;
  place[1] = 0;
  place[2] = 300;
  place[3] = (client.bottom > kStatusBarHeight ? client.bottom - kStatusBarHeight : 0) / 5;
  place[4] = -1;
  char system[kPathSize * 2];
  char text[128];
  if (ToSystemPath(path, system, sizeof system) < 0) return;
  if (OsProfileGetString(system, kDocListSection, kProjectKey, "", text, sizeof text) <= 0) return;
  int values[5];
  if (sscanf(text, "%d %d %d %d %d", &values[0], &values[1], &values[2], &values[3], &values[4]) >=
      4) {
    for (int i = 0; i < 5 && (i < 4 || values[4] > 0); ++i)
      place[i] = values[i];
  }
}

// Opening a project starts from an empty workspace; false when a window refused to close.
bool CloseWorkspace() {
  SendMessageW(g_frame.frame, WM_COMMAND, g_frame.projectWindow ? kCmdCloseProject : kCmdCloseAll,
               0);
  return !g_frame.projectWindow && !GetWindow(g_frame.mdiClient, GW_CHILD);
}

HWND CreateProjectWindow(ProjectWindow* data) {
  int place[5];
  ReadWindowPlace(data->project.path, place);
  MDICREATESTRUCTW create = {};
  create.szClass = kProjectClassName;
  create.szTitle = L"Project";
  create.hOwner = g_frame.instance;
  create.x = place[0];
  create.y = place[1];
  create.cx = place[2];
  create.cy = place[3];
  if (place[4] == SW_SHOWMAXIMIZED) create.style |= WS_MAXIMIZE;
  if (place[4] == SW_SHOWMINIMIZED) create.style |= WS_MINIMIZE;
  create.lParam = reinterpret_cast<LPARAM>(data);
  HWND window = reinterpret_cast<HWND>(
      SendMessageW(g_frame.mdiClient, WM_MDICREATE, 0, reinterpret_cast<LPARAM>(&create)));
  if (!window) {
    DebugLog("PRJ_CreateMdiChild() Error");
    FreeProjectTargets(&data->project);
    FreeMem(data);
    return nullptr;
  }
  ShowProjectTitle(data);
  FillTree(data, nullptr);
  UpdateMenuState(2, false);
  return window;
}

ProjectWindow* NewWindowData() {
  ProjectWindow* data =
      static_cast<ProjectWindow*>(AllocMem(sizeof(ProjectWindow), kOwnerProjectWindow));
  if (data) memset(data, 0, sizeof *data);
  return data;
}

// ---- The new-project dialog

struct NewProjectDialog {
  char name[kPathSize];
  char folder[kPathSize];
};

INT_PTR CALLBACK NewProjectProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
  NewProjectDialog* data = static_cast<NewProjectDialog*>(DialogData(dialog, message, lParam));
  switch (message) {
    case WM_INITDIALOG:
      SetControlText(dialog, IDC_PROJECT_NAME, data->name, false);
      SetControlText(dialog, IDC_PROJECT_FOLDER, data->folder, true);
      return TRUE;
    case WM_COMMAND:
      switch (LOWORD(wParam)) {
        case IDC_PROJECT_BROWSE: {
          char folder[kPathSize];
          GetControlText(dialog, IDC_PROJECT_FOLDER, folder, sizeof folder, true);
          if (AskFolder(dialog, GetStr(kMsgNeedFolder), folder, sizeof folder, nullptr))
            SetControlText(dialog, IDC_PROJECT_FOLDER, folder, true);
          return TRUE;
        }
        case IDOK:
          GetControlText(dialog, IDC_PROJECT_NAME, data->name, sizeof data->name, false);
          GetControlText(dialog, IDC_PROJECT_FOLDER, data->folder, sizeof data->folder, true);
          if (!data->name[0]) {
            HostMessageId(kMsgEnterProjectName, kMbOk | kMbIconExclamation, nullptr);
            SetFocus(GetDlgItem(dialog, IDC_PROJECT_NAME));
          } else if (!data->folder[0]) {
            HostMessageId(kMsgEnterFolder, kMbOk | kMbIconExclamation, nullptr);
            SetFocus(GetDlgItem(dialog, IDC_PROJECT_FOLDER));
          } else {
            EndDialog(dialog, IDOK);
          }
          return TRUE;
        case IDCANCEL:
          EndDialog(dialog, IDCANCEL);
          return TRUE;
      }
      break;
  }
  return FALSE;
}

// Creates every missing folder of `path` (internal form).
void CreateFolders(const char* path) {
  char folder[kPathSize];
  size_t length = strlen(path);
  if (length >= sizeof folder) return;
  memcpy(folder, path, length + 1);
  for (size_t i = 1; i <= length; ++i) {
    if (folder[i] != '/' && folder[i] != '\0') continue;
    if (i == 2 && folder[1] == ':') continue;  // the drive
    char kept = folder[i];
    folder[i] = '\0';
    if (FileGetAttributes(folder) == kNoAttributes) FolderCreate(folder);
    folder[i] = kept;
  }
}

}  // namespace

bool RegisterProjectChildClass(HINSTANCE instance) {
  SetProjectHost(&kWindowHost);
  WNDCLASSEXW cls = {};
  cls.cbSize = sizeof cls;
  cls.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
  cls.lpfnWndProc = ProjectChildProc;
  cls.cbWndExtra = sizeof(void*);
  cls.hInstance = instance;
  cls.hIcon = LoadIconW(instance, MAKEINTRESOURCEW(IDI_DOCUMENT));
  cls.hIconSm = cls.hIcon;
  cls.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512));  // IDC_ARROW
  cls.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_WINDOW + 1);
  cls.lpszClassName = kProjectClassName;
  if (RegisterClassExW(&cls)) return true;
  DebugLog("PRJ_RegistMdiChild() Error");
  return false;
}

HWND OpenProjectWindow(const char* path) {
  if (!CloseWorkspace()) return nullptr;
  ProjectWindow* data = NewWindowData();
  if (!data) return nullptr;
  if (!LoadProject(&data->project, path)) {
    FreeMem(data);
    return nullptr;
  }
  HWND window = CreateProjectWindow(data);
  if (window) {
    // The project's own desk: the documents that were open with it.
    RestoreDocumentList(path);
    SendMessageW(g_frame.mdiClient, WM_MDIACTIVATE, reinterpret_cast<WPARAM>(window), 0);
  }
  return window;
}

void OpenProjectLater(const char* path) {
  if (strlen(path) >= sizeof g_startProject) return;
  strcpy(g_startProject, path);
  PostMessageW(g_frame.frame, WM_COMMAND, IDM_PRJ_OPEN, 0);
}

void OpenProjectWithDialog(HWND frame) {
  if (g_startProject[0]) {
    char start[kPathSize];
    strcpy(start, g_startProject);
    g_startProject[0] = '\0';
    OpenProjectWindow(start);
    return;
  }
  char path[kPathSize] = "";
  if (!AskOpenFileName(frame, path, sizeof path, GetStr(kMsgOpenTitle), kProjectFilter, nullptr,
                       0)) {
    return;
  }
  OpenProjectWindow(path);
}

void NewProjectWithDialog(HWND frame) {
  NewProjectDialog dialog = {};
  char path[kPathSize];
  if (DefaultProjectPath(path, sizeof path) < 0) path[0] = '\0';
  // "<folder>/NoName.prj": the folder and the name without its extension.
  char* slash = strrchr(path, '/');
  if (slash) {
    *slash = '\0';
    strcpy(dialog.folder, path);
    strcpy(dialog.name, slash + 1);
  } else {
    strcpy(dialog.name, path);
  }
  if (char* dot = strrchr(dialog.name, '.')) *dot = '\0';
  if (RunDialog(frame, IDD_NEW_PROJECT, NewProjectProc, &dialog) != IDOK) return;
  size_t folderLength = strlen(dialog.folder);
  while (folderLength > 1 && dialog.folder[folderLength - 1] == '/')
    dialog.folder[--folderLength] = '\0';
  WriteText(kProjectSection, "DefPrjFolder", dialog.folder);
  if (FormatStr(path, sizeof path, "%s/%s.prj", dialog.folder, dialog.name) > kPathSize) return;
  // A new project over an existing one would hide all of its targets.
  if (FileGetAttributes(path) != kNoAttributes &&
      HostMessagePath(kMsgAlreadyThere, kMbYesNo | kMbIconQuestion, path) != kIdYes) {
    return;
  }
  if (!CloseWorkspace()) return;
  ProjectWindow* data = NewWindowData();
  if (!data) return;
  strcpy(data->project.path, path);
  CreateFolders(dialog.folder);
  if (!SaveProject(&data->project)) {
    FreeMem(data);
    return;
  }
  HWND window = CreateProjectWindow(data);
  if (window) SendMessageW(window, WM_COMMAND, IDM_PRJ_ADD_TARGET, 0);
}

const char* ProjectListFile() {
  const char* path = OpenProjectPath();
  return path && FileGetAttributes(path) != kNoAttributes ? path : nullptr;
}

const char* OpenProjectPath() {
  if (!g_frame.projectWindow) return nullptr;
  ProjectWindow* data = WindowData(g_frame.projectWindow);
  return data ? data->project.path : nullptr;
}

Project* OpenProject() {
  if (!g_frame.projectWindow) return nullptr;
  ProjectWindow* data = WindowData(g_frame.projectWindow);
  return data ? &data->project : nullptr;
}
