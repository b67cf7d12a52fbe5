// The "Pixel Formats" tab opens the pixel-format browser.
#include "shell/main_window.h"

namespace shell {

void VelmoraMain::CheckPixelFormats_SetLbl_Click() {}

}  // namespace shell
