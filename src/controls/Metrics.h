#pragma once

/// Every size of the window, in points, by what it is for. All lie on an 8-point grid or on half of it.
namespace trimora::controls::metrics {

inline constexpr int kToolbarHeight = 52;
inline constexpr int kToolStripWidth = 64;    ///< Hand, Brush, Restore and the brush size
inline constexpr int kRightPanelWidth = 128;  ///< background modes and colour
inline constexpr int kStatusHeight = 24;

inline constexpr int kGap = 8;           ///< between neighbours
inline constexpr int kPanelMargin = 12;  ///< from a panel's edge to what it holds
inline constexpr int kCornerRadius = 2;

inline constexpr int kToolButton = 40;  ///< side of a round tool button
inline constexpr int kToolIcon = 32;    ///< the picture in it
inline constexpr int kBarButton = 32;   ///< height of a button in the toolbar
inline constexpr int kBarIcon = 20;
inline constexpr int kModeIcon = 24;  ///< picture of a background mode
inline constexpr int kSwatchHeight = 24;

inline constexpr int kSliderLength = 160;
inline constexpr int kSliderGroove = 4;
inline constexpr int kSliderHandle = 14;

inline constexpr int kBusyWidth = 96;  ///< bar that moves while work goes on

inline constexpr int kDropFrameInset = 30;  ///< the empty view's dashed frame, from the view's edge
inline constexpr int kDropFrameRadius = 5;
inline constexpr double kDropFrameWidth = 2;
inline constexpr double kDropDash = 10;  ///< length of a dash and of the gap after it
inline constexpr int kDropImage = 96;

inline constexpr double kSmallFont = 10.5;  ///< panels, buttons, status
inline constexpr double kHintFont = 13;     ///< the words in the empty view

inline constexpr int kWindowWidth = 1200;  ///< of a new window
inline constexpr int kWindowHeight = 800;
inline constexpr int kSmallestWidth = 720;
inline constexpr int kSmallestHeight = 520;

}  // namespace trimora::controls::metrics
