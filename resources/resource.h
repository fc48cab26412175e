// Resource and control numbers shared by the resource script and the code.
#pragma once

#define IDR_QUILL 1  // icon, menu and accelerator table

// Child windows of the frame.
#define IDC_MDI_CLIENT 77
#define IDC_STATUS_BAR 78
#define IDM_FIRST_CHILD 10000

// Commands.
#define IDM_CASCADE 86
#define IDM_TILE_VERTICAL 87
#define IDM_TILE_HORIZONTAL 88
#define IDM_ARRANGE_ICONS 89
#define IDM_CLOSE_CHILD 84
#define IDM_EXIT 85
#define IDM_CLOSE_ALL 91
