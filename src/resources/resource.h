// Numbers of commands, menus, dialogs and controls, shared by the resource compiler and the program. Plain defines,
// because the resource compiler reads nothing else. Names of texts are in foundation/message_ids.h.
#pragma once

// Child windows of the main window.
#define IDC_CONSOLE 605
#define IDC_TREE_PANE 606
#define IDC_LIST_PANE 607

// Commands. The help line and tooltip of each is the catalogue text with the same number.
#define IDM_CLEAR_CONSOLE 1280
#define IDM_ABORT 40001
#define IDM_ABOUT 40002
// Handed out for single FTP commands; only IDM_CMD_STAT among them does anything.
#define IDM_CMD_FIRST 40006
#define IDM_CMD_STAT 40017
#define IDM_CMD_LAST 40020
#define IDM_CONNECT 40021
#define IDM_COPY 40022
#define IDM_DELETE 40024
#define IDM_DELETE_SITE 40025
#define IDM_DISCONNECT 40026
#define IDM_EXITAPP 40027
#define IDM_HELP_CONTENTS 40030
#define IDM_VIEW_LARGE_ICONS 40031
#define IDM_VIEW_LINEUP_ICONS 40032
#define IDM_VIEW_LIST 40033
#define IDM_LOGIN_SEND 40034
#define IDM_LV_CDPARENT 40035
#define IDM_LV_DELETE 40038
#define IDM_LV_NEWFOLDER 40039
#define IDM_LV_PASTE 40040
#define IDM_LV_REFRESH 40043
#define IDM_LV_RENAME 40044
#define IDM_LV_RESOLVE 40045
#define IDM_LV_RECEIVE 40046
#define IDM_NEW_SITE 40047
#define IDM_NEWFOLDER 40048
#define IDM_PRINT 40051
#define IDM_PROPERTIES 40052
#define IDM_QUICKVIEW 40053
#define IDM_RECEIVE 40054
#define IDM_RENAME 40055
#define IDM_RENAME_SITE 40056
#define IDM_DETAILS_UNIX 40057
#define IDM_DETAILS_WINDOWS 40058
#define IDM_SAVECFG 40059
#define IDM_SELECTALL 40060
#define IDM_SETUP 40064
#define IDM_SHOWCONSOLE 40066
#define IDM_VIEW_SMALL_ICONS 40069
#define IDM_SORTBY_AUTO 40070
#define IDM_SORTBY_DATE 40071
#define IDM_SORTBY_GROUP 40072
#define IDM_SORTBY_LINKS 40073
#define IDM_SORTBY_NAME 40074
#define IDM_SORTBY_OWNER 40075
#define IDM_SORTBY_SIZE 40076
#define IDM_SORTBY_TYPE 40077
#define IDM_SORTBY_UMASK 40078
#define IDM_TV_DELETE 40081
#define IDM_TV_GOTO 40082
#define IDM_TV_NEWFOLDER 40083
#define IDM_TV_REFRESH 40086
#define IDM_TV_RENAME 40087
#define IDM_TV_RECEIVE 40088
#define IDM_SETCURSOR 40091

// Positions in "ZarnMenu", and of the two sub-menus within its View menu.
#define MENU_FILE 0
#define MENU_EDIT 1
#define MENU_VIEW 2
#define MENU_SERVER 3
#define MENU_HELP 4
#define MENU_VIEW_DETAILS 3
#define MENU_VIEW_ARRANGE 5

// Positions in "PopupMenus".
#define POPUP_TV_WIZARD 0
#define POPUP_TV_SITE 1
#define POPUP_TV_FOLDER 2
#define POPUP_LISTVIEW 3
#define POPUP_TV_DIRECTORY 4

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

// "AskTextDlg" and "AskPasswordDlg".
#define IDC_ASK_PROMPT 1201
#define IDC_ASK_TEXT 1202

// "ServerErrorDlg".
#define IDC_ERROR_CODE 1211
#define IDC_ERROR_REPLY 1212
#define IDC_ERROR_DEFINITION 1213
#define IDC_ERROR_TASK 1214

// "ServerStatusDlg" and "LocalDirDlg".
#define IDC_STATUS_LIST 1221
#define IDC_LOCAL_DIR 1231

// "TransferDlg".
#define IDC_TRANSFER_ABORT 1029
#define IDC_TRANSFER_BYTES 1046
#define IDC_TRANSFER_FROM 1048
#define IDC_TRANSFER_TO 1049
#define IDC_TRANSFER_COUNTERS 1056
#define IDC_TRANSFER_NAME 1058
#define IDC_TRANSFER_ASCII 1139
#define IDC_TRANSFER_BINARY 1140
#define IDC_TRANSFER_L8 1141
#define IDC_TRANSFER_BAR 1162

// "ConfirmReplaceDlg"; its other buttons are IDYES, IDNO and IDCANCEL.
#define IDC_REPLACE_ICON 1241
#define IDC_REPLACE_TEXT 1242
#define IDC_REPLACE_OLD_ICON 1243
#define IDC_REPLACE_OLD_SIZE 1244
#define IDC_REPLACE_OLD_DATE 1245
#define IDC_REPLACE_NEW_ICON 1246
#define IDC_REPLACE_NEW_SIZE 1247
#define IDC_REPLACE_NEW_DATE 1248
#define IDC_REPLACE_YES_TO_ALL 1249

// "AboutDlg".
#define IDC_ABOUT_VERSION 1251
