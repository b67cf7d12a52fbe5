#pragma once
// The quad-view test's texts and small decisions, free of Windows calls:
// the result bits, the report lines, the description, the keys, the
// close requests.
#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace quadview {

// Values of the four "Fix …" check boxes (0 unticked, 1 ticked, 2 grey).
struct FixBoxes {
  int formResize = 0;
  int formPaint = 0;
  int picResize = 0;
  int picPaint = 0;
};

// Bit 0 form resize, bit 1 form paint, bit 2 picture resize, bit 3 picture
// paint; a box counts when its value is not 0.
short QuadResult(const FixBoxes& boxes);

// The four report lines for a result: CR LF, two blanks, a 21-character
// label, TAB, TRUE or FALSE.
std::string QuadViewText(short result);

// The decimal result text that ShowMe hands back; nothing for other text.
std::optional<short> ParseQuadResult(std::string_view text);

// The description shown above the views (lines separated by CR alone).
std::string DescriptionText();

// "QuadView" + " " + "Velmora": the main window's button caption first.
std::string WindowCaption(std::string_view quadViewCaption);

// What the first redraw appends to the description: LF LF, the largest
// viewport, " - " and the viewport in force before the view set its own.
std::string ViewportInfoText(const std::array<int, 2>& maxDims, const std::array<int, 4>& viewport);

// The value the two form boxes start with: the absolute value of the
// force-redraw choice as a -1/0 boolean.
int InitialFormFixValue(bool currentOGLRedraw);

enum class KeyAction { None, ToggleFixBoxes, ToggleCopyPicture };
// `shift` holds 1 for Shift, 2 for Ctrl, 4 for Alt; only the Ctrl bit counts.
KeyAction KeyUpAction(int keyCode, int shift);

// Why a window is being closed.
enum UnloadMode : int {
  kFormControlMenu = 0,  // its system menu, Alt+F4
  kFormCode = 1,         // our own code (Close, Error)
  kAppWindows = 2,       // Windows is shutting down
  kAppTaskManager = 3,   // another program asked it to close
};
// Whether the window hides itself before it is unloaded.
bool HidesOnQueryUnload(int mode);

}  // namespace quadview
