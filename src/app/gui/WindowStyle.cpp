#include "app/gui/WindowStyle.h"

QString WindowStyle::styleSheet()
{
    return QStringLiteral(R"(
#sidebar { background: #f4f3f0; }
#sidebarScroll, #sidebarScroll > QWidget, #sidebarPage { background: transparent; }
#sidebar QListWidget#sidebarList { background: transparent; outline: 0; selection-background-color: #dfddd6;
    selection-color: #161616; }
#sidebar QListWidget#sidebarList::item { padding: 3px 4px; border-radius: 6px; }
#sidebar QListWidget#sidebarList::item:hover:!selected { background: #ebe9e4; }
#sidebar QListWidget#sidebarList::item:selected { background: #dfddd6; }
#sectionHeading { color: #7b7870; font-weight: 600; }
#sidebarRule, #detailRule { border: none; border-top: 1px solid #e4e2dc; max-height: 1px; }
#trashButton { color: #444; }
#statusText { color: #333; }
#statusText:disabled { color: #9a978f; }
#listHeader { background: #fbfbfa; border-bottom: 1px solid #e6e4df; }
#poemList { background: #ffffff; outline: 0; selection-background-color: #dce7f5; selection-color: #161616; }
QToolButton#sortButton { padding: 2px 4px; color: #4a4843; }
QToolButton#sortButton::menu-indicator { image: none; width: 0px; }
#resultSummary { color: #6f6c66; }
#scopeHint { background: #fbf6e6; border: 1px solid #efe3bd; border-radius: 6px; padding: 7px 9px; color: #5b4b12; }
#detailView, #detailPage { background: #ffffff; }
#titleField { background: transparent; padding: 2px 0px; }
#fieldLabel { color: #77746d; }
#saveStatus { color: #77746d; }
#saveStatus[failed="true"] { color: #b3261e; }
#emptyTitle { color: #5c5a55; font-size: 14pt; font-weight: 600; }
#emptyText { color: #8a877f; }
#dialogTitle { font-size: 15pt; font-weight: 600; }
#hintText { color: #6f6c66; }
#trashList { border: 1px solid #e4e2dc; border-radius: 6px; background: #ffffff; }
#trashRows { background: #ffffff; }
#trashRow { border-bottom: 1px solid #efede8; background: #ffffff; }
#trashTitle { font-weight: 600; }
#aboutName { font-size: 20pt; font-weight: 700; }
QPlainTextEdit#notesField { background: #faf9f6; border: 1px solid #e4e2dc; border-radius: 6px; padding: 2px; }
#listPane QScrollBar:vertical, #detailView QScrollBar:vertical, #sidebar QScrollBar:vertical,
#trashList QScrollBar:vertical { background: transparent; width: 10px; margin: 0px; }
#listPane QScrollBar::handle:vertical, #detailView QScrollBar::handle:vertical,
#sidebar QScrollBar::handle:vertical, #trashList QScrollBar::handle:vertical {
    background: #d3d1cb; border-radius: 3px; min-height: 32px; margin: 2px 2px 2px 2px; }
#listPane QScrollBar::handle:vertical:hover, #detailView QScrollBar::handle:vertical:hover { background: #b9b6af; }
#listPane QScrollBar::add-line, #listPane QScrollBar::sub-line, #detailView QScrollBar::add-line,
#detailView QScrollBar::sub-line, #sidebar QScrollBar::add-line, #sidebar QScrollBar::sub-line,
#trashList QScrollBar::add-line, #trashList QScrollBar::sub-line { height: 0px; width: 0px; }
#listPane QScrollBar::add-page, #listPane QScrollBar::sub-page, #detailView QScrollBar::add-page,
#detailView QScrollBar::sub-page, #sidebar QScrollBar::add-page, #sidebar QScrollBar::sub-page,
#trashList QScrollBar::add-page, #trashList QScrollBar::sub-page { background: transparent; }
QSplitter#columns::handle { background: #e2e0da; }
QToolBar#mainToolBar { border-bottom: 1px solid #e2e0da; spacing: 4px; padding: 3px 6px; }
#readOnlyBanner { background: #fbf6e6; border-bottom: 1px solid #efe3bd; padding: 7px 12px; color: #5b4b12; }
#settingsPage { background: #f7f6f3; }
#settingsSection { color: #4a4843; font-weight: 600; }
#settingsGroup { background: #ffffff; border: 1px solid #e4e2dc; border-radius: 8px; }
#settingsGroup QLabel { background: transparent; }
QTreeWidget#safetyBackupList::item { padding: 3px 2px; }
)");
}
