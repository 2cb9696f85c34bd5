#pragma once

#include <QBrush>
#include <QColor>
#include <QImage>
#include <QRandomGenerator>

/// Ways to make a colour, and what is made of one. Components are sRGB.
namespace trimora::util {

/// A colour of three components that are all fractions 0..1, or all 0..255 where any of them is above
/// 1: (255, 128, 0) and (1.0, 128 / 255.0, 0) are the same. Larger values are clamped.
[[nodiscard]] QColor r_g_b(double r, double g, double b);
/// The same with an opacity, always a fraction.
[[nodiscard]] QColor r_g_b_a(double r, double g, double b, double a);

/// Opaque, each component any of the 256 values with the same chance.
[[nodiscard]] QColor randomColor(QRandomGenerator& generator = *QRandomGenerator::global());

/// One pixel of the colour, premultiplied.
[[nodiscard]] QImage pixel(const QColor& color);

/// The light checkerboard that stands for transparency: squares of 8 points in white and a light grey.
/// Made once; main thread only.
[[nodiscard]] const QBrush& patternBackground();

}  // namespace trimora::util
