#pragma once

namespace trimora::controls {

/// Tells the toolkit how screen readers see a ColorArea: an area higher than three times its width as a
/// slider from the bottom up, any other as a colour chooser; the value of both is the colour under the
/// marker. Once or more often; the first call counts.
void installColorAreaAccess();

}  // namespace trimora::controls
