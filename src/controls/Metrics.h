#pragma once

/// Every size of the window, in points, by what it is for. All lie on an 8-point grid or on half of it.
namespace trimora::controls::metrics {

inline constexpr int kToolbarHeight = 52;
inline constexpr int kRightPanelWidth = 168;  ///< background modes and colour

inline constexpr int kToolPanelWidth = 224;     ///< the editor's tool strip: three tools and a size box
inline constexpr int kStripTool = 56;           ///< side of a tool in it
inline constexpr int kModeButton = 44;          ///< side of a background mode's button
inline constexpr int kModeImage = 36;           ///< and of its picture
inline constexpr int kQuickPanelVariant1 = 50;  ///< width of the quick panel that is not in use
inline constexpr int kFloatingInset = 16;    ///< of the floating panel from the cut view's corner, at first
inline constexpr int kBrushMenuWidth = 120;  ///< of an item of the brush menu
inline constexpr int kBrushMenuHeight = 33;
inline constexpr int kBrushMenuGap = 5;  ///< from the menu to its button, and round the item's button
inline constexpr int kOpenWidth = 160;   ///< the empty screen's call to open a picture
inline constexpr int kOpenHeight = 40;
inline constexpr int kOpenGap = 72;      ///< from the top of the line above it
inline constexpr int kEmptyWidth = 640;  ///< smallest size of the editor screen before the first picture
inline constexpr int kEmptyHeight = 420;
inline constexpr int kLoadedWidth = 800;  ///< smallest width from then on

inline constexpr int kGap = 8;           ///< between neighbours
inline constexpr int kPanelMargin = 12;  ///< from a panel's edge to what it holds
inline constexpr int kCornerRadius = 2;

inline constexpr int kToolButton = 40;  ///< side of a round tool button
inline constexpr int kToolIcon = 32;    ///< the picture in it
inline constexpr int kBarButton = 32;   ///< height of a button in the toolbar
inline constexpr int kBarIcon = 20;
inline constexpr int kModeIcon = 24;  ///< picture of a background mode

inline constexpr int kSliderLength = 160;

inline constexpr int kBarGap = 4;         ///< between buttons of one group of the toolbar
inline constexpr int kBarGroupRoom = 24;  ///< what a group of the toolbar may grow by while there is room
inline constexpr int kTitleLeast = 96;    ///< the title's width in the toolbar: collapsed
inline constexpr int kTitleMost = 480;    ///< and at most

inline constexpr int kMenuTitlePaddingX = 8;  ///< in the menu bar, from a title to its neighbour's half way
inline constexpr int kMenuTitlePaddingY = 4;
inline constexpr int kTipPadding = 10;  ///< from a tool tip's edge to its text

inline constexpr int kMessageHeight = 32;  ///< the line over the picture's lower edge that says what goes on
inline constexpr int kMessageDistance = 16;  ///< from that edge, and from the sides at least
inline constexpr int kMessageWheel = 16;     ///< side of the wheel that turns in it while work goes on

inline constexpr int kDropFrameInset = 30;  ///< the empty view's dashed frame, from the view's edge
inline constexpr int kDropFrameRadius = 5;
inline constexpr double kDropFrameWidth = 2;
inline constexpr double kDropDash = 10;  ///< length of a dash and of the gap after it
inline constexpr int kDropImage = 96;

inline constexpr int kHintArrow = 48;  ///< the arrow that points at the drop area

inline constexpr int kMiniMap = 128;         ///< side of the mini-map's picture area
inline constexpr int kMiniMapCaption = 20;   ///< height of the line under it
inline constexpr double kMapEdge = 1;        ///< width of the line round the part in view
inline constexpr int kDragOut = 24;          ///< how far outside the mini-map a press takes the picture along
inline constexpr double kMapStep = 0.1;      ///< an arrow key's way, as a share of the part in view
inline constexpr double kLongMapStep = 0.5;  ///< and with Shift held

inline constexpr int kBrushPreview = 224;  ///< side of the brush preview; holds the largest brush

inline constexpr int kWarningWidth = 306;  ///< the question before everything is brought back
inline constexpr int kWarningHeight = 113;
inline constexpr double kSheetCorner = 5;
inline constexpr double kSheetEdge = 1;  ///< width of the light line round it
inline constexpr int kAnswerWidth = 96;  ///< a button of that question

inline constexpr double kSmallFont = 10.5;   ///< panels, buttons, status
inline constexpr double kQuestionFont = 13;  ///< what a sheet asks

inline constexpr int kWindowWidth = 1200;  ///< of a new window
inline constexpr int kWindowHeight = 800;
inline constexpr int kSmallestWidth = 800;
inline constexpr int kSmallestHeight = 560;

inline constexpr double kTrackWidth = 3;    ///< line of a slider with a knob
inline constexpr int kSliderAcross = 25;    ///< such a slider's thickness; odd, so that the line is centred
inline constexpr int kSliderShortest = 80;  ///< and along it
inline constexpr double kKnobRing = 1.5;    ///< focus ring of a knob: its width, and how far out it lies
inline constexpr int kPercentFieldWidth = 48;  ///< field for "100%"; more where the font needs it
inline constexpr int kPercentFieldHeight = 24;
inline constexpr int kSliderIcon = 24;         ///< picture beside such a slider
inline constexpr double kDiscInset = 5;        ///< from a round button's click area to its disc, on each side
inline constexpr double kImageRise = 1;        ///< by how much the image's box of a round button is taller
inline constexpr double kFocusLine = 1.5;      ///< width of the ring round what the keyboard acts on
inline constexpr double kSelectionLine = 2;    ///< border of a selected tile
inline constexpr double kCallFont = 12;        ///< text of a call to action
inline constexpr double kHalfDiscFont = 43;    ///< title of a half-disc button
inline constexpr double kHalfDiscShare = 2.8;  ///< the width over the half disc's radius
inline constexpr double kHalfDiscTextShare = 0.75;  ///< of its width: what a title may fill
inline constexpr int kHalfDisc = 160;               ///< width of a half-disc button
inline constexpr int kCallWidth = 104;              ///< a call to action
inline constexpr int kCallHeight = 32;
inline constexpr int kButtonPadding = 12;  ///< from a rectangular button's edge to its text

inline constexpr int kHueStripWidth = 12;   ///< colour picker: the narrow strip
inline constexpr int kShadeField = 84;      ///< the square beside it; both are so high
inline constexpr int kColorField = 24;      ///< height of the row under them
inline constexpr int kHueMarker = 4;        ///< height of the strip's marker, which is as wide as the strip
inline constexpr int kShadeMarker = 8;      ///< side of the field's marker
inline constexpr double kMarkerLine = 1.5;  ///< width of a marker's ring
inline constexpr double kMarkerEdge = 1;    ///< and of the dark line outside it
inline constexpr double kHueCorner = 1;     ///< corner radius of the strip
inline constexpr double kShadeCorner = 2;   ///< and of the field
inline constexpr int kArrowStep = 1;        ///< how far an arrow key moves a marker
inline constexpr int kLongArrowStep = 10;   ///< and with Shift held

}  // namespace trimora::controls::metrics
