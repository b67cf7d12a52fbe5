// The run script's companion: "quit" presses a running Velmora's Quit button and waits for it.
#include <cstdio>
#include <cstring>

#include "e2e/driver.h"

int main(int argc, char** argv) {
  if (argc < 2 || std::strcmp(argv[1], "quit") != 0) {
    std::puts("usage: velmora_ctl quit");
    return 2;
  }
  HWND main = FindWindowA("Velmora_Main", nullptr);
  if (!main) {
    std::puts("velmora_ctl: no Velmora window");
    return 1;
  }
  if (HWND quit = e2e::FindControl(main, "Button", "Quit"))
    e2e::Press(quit);
  else
    PostMessageA(main, WM_CLOSE, 0, 0);
  bool gone = e2e::WaitFor([&] { return !IsWindow(main); }, 10000);
  std::puts(gone ? "velmora_ctl: Velmora quit" : "velmora_ctl: Velmora did not quit");
  return gone ? 0 : 1;
}
