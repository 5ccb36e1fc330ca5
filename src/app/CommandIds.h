// The numbers of the program's commands.
#pragma once

namespace Tracelyn {

enum class CommandId : int {
    CaptureLogfile = 135,
    PreviousFile = 137,
    NextFile = 138,
    SaveCsv = 141,
    ZoomOut = 32771,
    ZoomReset = 32772,
    ZoomIn = 32773,
    CursorLeft = 32774,
    CursorRight = 32775,
    FastLeft = 32776,
    FastRight = 32777,
    SelectNextGroup = 32778,
    SelectPreviousGroup = 32779,
    ToggleSelectedGroup = 32780,
    ToggleFixedCursor = 32781,
    ChangeBackground = 32792,
    FileOpen = 57601,
    FileClose = 57602,
    FileSave = 57603,
    About = 57664,
    Exit = 57665,
    ViewToolbar = 59392,
    ViewStatusBar = 59393,
};

} // namespace Tracelyn
