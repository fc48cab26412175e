// Resource and control numbers shared by the resource script and the code.
#pragma once

#define IDR_QUILL 1     // icon, menu and accelerator table
#define IDI_DOCUMENT 2  // the document windows' icon

// The build commands' pictures on the menu bar.
#define IDB_BUILD_RUN 2
#define IDB_REBUILD 3
#define IDB_BUILD 4

// Child windows of the frame.
#define IDC_MDI_CLIENT 77
#define IDC_STATUS_BAR 78
#define IDM_FIRST_CHILD 10000

// Commands of the menu and the accelerator table.
#define IDM_LINE_CONT 22
#define IDM_TOOL_KEYWORDS 23
#define IDM_TOOL_ERRMSG 24
#define IDM_TOOL_EQUATIONS 25
#define IDM_LINE_SORT 26
#define IDM_OPEN_STYLE 27
#define IDM_TOOL_BIN2SRC 28
#define IDM_TOOL_STRCODE 29
#define IDM_SCROLL_UP 30
#define IDM_SCROLL_DOWN 31
#define IDM_SECOND_COPY 32
#define IDM_SAVE_ALL 34
#define IDM_DELETE_WORD_BACK 35
#define IDM_IMPORT 37
#define IDM_SAVE_OTHER 38
#define IDM_TERMINAL 39
#define IDM_PREFIX_O 40
#define IDM_PREFIX_Q 41
#define IDM_PREFIX_K 42
#define IDM_HELP 43
#define IDM_ABOUT 44
#define IDM_PRJ_MODIFY_TARGET 45
#define IDM_TOOL_CALC 46
#define IDM_TOOL_RCALC 47
#define IDM_WORD_LEFT 48
#define IDM_WORD_RIGHT 49
#define IDM_SET_BOOKMARK1 50  // ... 58
#define IDM_GO_BOOKMARK1 60   // ... 68
#define IDM_UNDO 70
#define IDM_REDO 71
#define IDM_SHIFT_LEFT 72
#define IDM_SHIFT_RIGHT 73
#define IDM_SELECT_ALL 74
#define IDM_OPTIONS 75
#define IDM_GOTO_LINE 76
#define IDM_NEW 79
#define IDM_OPEN 80
#define IDM_SAVE 82
#define IDM_SAVE_AS 83
#define IDM_CLOSE_CHILD 84
#define IDM_EXIT 85
#define IDM_CASCADE 86
#define IDM_TILE_VERTICAL 87
#define IDM_TILE_HORIZONTAL 88
#define IDM_ARRANGE_ICONS 89
#define IDM_CLOSE_ALL 91
#define IDM_TEXT_START 92
#define IDM_TEXT_END 93
#define IDM_SELECT_TO_START 94
#define IDM_SELECT_TO_END 95
#define IDM_OPEN_UNDER_CARET 99
#define IDM_CUT 105
#define IDM_COPY 106
#define IDM_PASTE 107
#define IDM_FIND 108
#define IDM_FIND_NEXT 109
#define IDM_REPLACE 110
#define IDM_DATE_TIME 111
#define IDM_BRACE_MATCH 113
#define IDM_PRJ_NEW 114
#define IDM_PRJ_OPEN 115
#define IDM_PRJ_SAVE 116
#define IDM_PRJ_SAVE_AS 117
#define IDM_PRJ_COMPRESS 118
#define IDM_PRJ_CLOSE 119
#define IDM_PRJ_ADD_FILE 120
#define IDM_PRJ_ADD_TARGET 121
#define IDM_PRJ_REMOVE 122
#define IDM_PRJ_OPEN_FILE 123
#define IDM_BUILD_RUN 124
#define IDM_BUILD 125
#define IDM_REBUILD 126

// The pages of the options sheet, numbered as their title strings.
#define IDD_OPT_FONT 134
#define IDD_OPT_COLOUR 135
#define IDD_OPT_OTHER 136

// Font page.
#define IDC_ENG_FONT 100
#define IDC_ENG_SIZE 101
#define IDC_HAN_FONT 102
#define IDC_HAN_SIZE 103
#define IDC_HAN_OFFSET 104
#define IDC_VERTICAL_FACES 105
#define IDC_USE_SELF_FONT 106
#define IDC_SELF_FONT 107
#define IDC_ENG_SIZE_SPIN 111
#define IDC_HAN_SIZE_SPIN 113
#define IDC_HAN_OFFSET_SPIN 114

// Colour page: a sample and a button per class.
#define IDC_COLOUR_SAMPLE0 200  // ... 207
#define IDC_COLOUR_BUTTON0 210  // ... 217
#define IDC_COLOUR_LABEL0 220   // ... 227

// Other page.
#define IDC_WHEEL_LINES 300
#define IDC_WHEEL_LINES_SPIN 301
#define IDC_LANGUAGE 302  // Korean, then every LANGUAGE/*.lng

#define IDC_DIALOG_NAME 996

// The editor's dialogs. Control numbers stay below 900, so that a language file can name each as
// its dialog's base number plus the control's.
#define IDD_FIND 140
#define IDD_REPLACE 141
#define IDD_GOTO_LINE 142
#define IDD_TAB_SIZE 143
#define IDD_FILL_CHAR 144
#define IDD_IMPORT 145
#define IDD_SAVE_OTHER 146

// The labels and frames of a dialog, numbered so that a language file can reach them.
#define IDC_LABEL1 201  // ... 213

// Find and replace.
#define IDC_FIND_TEXT 101
#define IDC_REPLACE_TEXT 102
#define IDC_MATCH_CASE 103
#define IDC_WHOLE_WORD 104
#define IDC_DIR_UP 105  // the pair: up, down
#define IDC_DIR_DOWN 106
#define IDC_SCOPE_ALL 107  // whole text, selection
#define IDC_SCOPE_SELECTION 108
#define IDC_ORIGIN_CARET 109  // from the caret, from the top
#define IDC_ORIGIN_TOP 110
#define IDC_CLEAR_FIND 111  // empties the find field
#define IDC_SWAP_TEXTS 112  // exchanges the find and replace fields
#define IDC_REPLACE_ALL 113

// Go to line, tab size and fill character: one number or character field each.
#define IDC_VALUE 101
#define IDC_VALUE_SPIN 102
#define IDC_KEEP_TAB_SIZE 103

// Open and save in another format.
#define IDC_FORMAT_PATH 101
#define IDC_FORMAT_BROWSE 102
#define IDC_FORMAT_ENCODING 103  // the encoding drop-down list
#define IDC_FORMAT_TAB 108
#define IDC_FORMAT_TAB_SPIN 109
#define IDC_LINE_END_CRLF 110  // the pair: CR LF, LF alone
#define IDC_LINE_END_LF 111
#define IDC_BYTE_ORDER_MARK 112

// The project window's tree, the new-project dialog and the target dialog.
#define IDC_PROJECT_TREE 127
#define IDD_NEW_PROJECT 150
#define IDD_TARGET 151
#define IDC_PROJECT_NAME 101
#define IDC_PROJECT_FOLDER 102
#define IDC_PROJECT_BROWSE 103
#define IDC_TARGET_TYPE0 101  // ... 106, in the order of the target types
#define IDC_PLATFORM32 107    // the pair: 32-bit, 64-bit
#define IDC_PLATFORM64 108
#define IDC_USE_DEFAULT_LIB 109
#define IDC_USE_KLIB 110
#define IDC_TARGET_NAME 111
#define IDC_TARGET_COMPILER 112
#define IDC_MAKE_START 113
#define IDC_ADD_COMPILE 114
#define IDC_C_OPTION 115
#define IDC_RC_OPTION 116
#define IDC_ASM_OPTION 117
#define IDC_LINK_OPTION 118
#define IDC_LIBRARIES 119
#define IDC_DEFINES 120
#define IDC_INCLUDES 121

// The help window and its built-in text (resource type "RTF").
#define IDD_HELP 11
#define IDC_HELP_TEXT 100
#define IDR_HELP_TEXT 1

// The Tools menu's windows: an input edit and an output edit each.
#define IDD_INT_CALC 160
#define IDD_ERROR_LOOKUP 161
#define IDC_TOOL_INPUT 100
#define IDC_TOOL_OUTPUT 101
#define IDD_REAL_CALC 162
#define IDC_CALC_RUNNING 102  // the style pair: running, expression
#define IDC_CALC_EXPRESSION 103
#define IDC_CALC_CLEAR 104  // a command only: empties the input
#define IDD_BIN2SRC 163
// The project archive's progress window.
#define IDD_ZIP_PROGRESS 180
#define IDC_PROGRESS_TEXT 100
#define IDC_PROGRESS_BAR 101
// The coding-style dialog.
#define IDD_STYLE_CONVERT 181
#define IDC_STYLE_FILE 100
#define IDC_STYLE_BROWSE 101
#define IDC_STYLE_BRACE_SAME 102  // ... 103: next line
#define IDC_STYLE_BRACE_NEXT 103
#define IDC_STYLE_INDENT 104
#define IDC_STYLE_TABS 105
#define IDC_STYLE_KEYWORD 106
#define IDC_STYLE_OPERATORS 107
#define IDC_STYLE_ONE_STATEMENT 108
#define IDC_BIN_FILE 100
#define IDC_BIN_BROWSE 102
#define IDC_SRC_FILE 103
#define IDC_SRC_BROWSE 104
#define IDC_BIN_OPEN_EDITOR 105
#define IDC_BIN_LINE_LEN 106
#define IDC_BIN_SKIP 107
#define IDC_BIN_FORMAT 108
#define IDC_BIN_TYPE0 109    // ... 111: C, assembler, Java
#define IDC_BIN_EXP0 112     // ... 114: hexadecimal, signed, unsigned
#define IDC_BIN_SIZE0 115    // ... 117: 1, 2, 4 bytes
#define IDC_BIN_ENDIAN0 118  // ... 119: as in the file, swapped

// The built-in logo picture (resource type RCDATA), shown by the about command when neither the
// cache nor the server has one.
#define IDR_LOGO_PNG 540
#define IDD_PORT_SETTINGS 190
#define IDC_PORT_NUMBER 100  // the ports that could be opened, "COM%d"
#define IDC_PORT_BAUD 101
#define IDC_PORT_PARITY 102
#define IDC_PORT_DATA_BITS 103
#define IDC_PORT_STOP_BITS 104
#define IDC_PORT_FLOW 106
// The text tools: line sort (modal), string code view and linear equations (modeless).
#define IDD_LINE_SORT 170
#define IDC_SORT_ASCENDING 100  // the order pair: ascending, descending
#define IDC_SORT_DESCENDING 101
#define IDC_SORT_IGNORE_CASE 102
#define IDC_SORT_NUMBERS 103
#define IDC_SORT_UNIQUE 104
#define IDD_STRING_CODE 171
#define IDD_EQUATIONS 172
