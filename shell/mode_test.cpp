#include "shell/mode.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using shell::ModeOption;
using shell::ModeSettings;

shell::HostSettings Host(int32_t sh, int32_t pf, int32_t redraw = 0) {
  shell::HostSettings h;
  h.present = true;
  h.VoraSH = sh;
  h.VoraPixelFormat = pf;
  h.hasRedraw = true;
  h.VoraRedraw = redraw;
  return h;
}

struct Expect {
  ModeOption option;
  std::string text;
  std::string tag;
  bool enabled;
  bool sh;
  int pf;
};

struct ModeCase {
  const char* name;
  std::function<void(ModeSettings&)> steps;
  Expect expected;
};

void Check(const ModeSettings& m, const Expect& e) {
  EXPECT_EQ(m.view.option, e.option);
  EXPECT_EQ(m.view.pixelFormatText, e.text);
  EXPECT_EQ(m.view.tag, e.tag);
  EXPECT_EQ(m.view.setEnabled, e.enabled);
  EXPECT_EQ(m.CurrentSH, e.sh);
  EXPECT_EQ(m.CurrentOGLPixelFormat(), e.pf);
}

TEST(ModeSettings, Table) {
  using O = ModeOption;
  const ModeCase cases[] = {
      {"no host file: designed state, [Default], button enabled",
       [](ModeSettings& m) { m.Load({}); }, {O::Software, "0", "[Default]", true, false, 0}},
      {"host hardware with index 0 selects best hardware",
       [](ModeSettings& m) { m.Load(Host(-1, 0)); }, {O::Hardware, "0", "[VORA Current]", false, true, 0}},
      {"host index 5 selects the explicit option",
       [](ModeSettings& m) { m.Load(Host(0, 5)); }, {O::Explicit, "5", "[VORA Current]", false, true, 5}},
      {"host software with negative index shows 0",
       [](ModeSettings& m) { m.Load(Host(0, -3)); }, {O::Software, "0", "[VORA Current]", false, false, -3}},
      {"typing -5 stores 5",
       [](ModeSettings& m) { m.Load({}); m.PixelFormat_Tbx_LostFocus("-5"); },
       {O::Software, "5", "[New]", true, false, 5}},
      {"with the host box ticked the typed index goes to the host value",
       [](ModeSettings& m) {
         m.Load(Host(-1, 0));
         m.view.useVora = true;
         m.PixelFormat_Tbx_LostFocus("-9");
       },
       {O::Hardware, "-9", "[VORA New]", true, true, 0}},
      {"previous at index 1 stays at 1",
       [](ModeSettings& m) { m.Load(Host(0, 1)); m.PrevPF_Cbt_Click(); },
       {O::Explicit, "1", "[VORA Current]", false, true, 1}},
      {"previous decrements",
       [](ModeSettings& m) { m.Load(Host(0, 4)); m.PrevPF_Cbt_Click(); },
       {O::Explicit, "3", "[VORA Current]", false, true, 3}},
      {"next on the last format leaves the index",
       [](ModeSettings& m) { m.Load(Host(0, 6)); m.NextPF_Cbt_Click(6); },
       {O::Explicit, "6", "[VORA Current]", false, true, 6}},
      {"next from best software selects explicit and steps to 1",
       [](ModeSettings& m) { m.Load({}); m.NextPF_Cbt_Click(6); },
       {O::Explicit, "1", "[New]", true, true, 1}},
      {"best software, not ticked",
       [](ModeSettings& m) { m.Load(Host(0, 4)); m.SWPixelFormat_Opt_Click(); },
       {O::Software, "0", "[Default]", false, false, 4}},
      {"best software, ticked, host hardware",
       [](ModeSettings& m) {
         m.Load(Host(-1, 0));
         m.view.useVora = true;
         m.SWPixelFormat_Opt_Click();
       },
       {O::Software, "0", "[VORA New]", true, false, 0}},
      {"best hardware, not ticked, host software",
       [](ModeSettings& m) { m.Load(Host(0, 4)); m.HWPixelFormat_Opt_Click(); },
       {O::Hardware, "0", "[New]", true, true, 0}},
      {"best hardware, ticked, host software",
       [](ModeSettings& m) {
         m.Load(Host(0, -2));
         m.view.useVora = true;
         m.HWPixelFormat_Opt_Click();
       },
       {O::Hardware, "0", "[VORA New]", true, true, 0}},
      {"explicit option, ticked",
       [](ModeSettings& m) { m.Load({}); m.view.useVora = true; m.PixelFormat_Opt_Click(); },
       {O::Explicit, "0", "[VORA New]", true, true, 0}},
      {"index box click selects explicit",
       [](ModeSettings& m) { m.Load({}); m.PixelFormat_Tbx_Click(); },
       {O::Explicit, "0", "[New]", true, true, 0}},
      {"use host settings with a host index",
       [](ModeSettings& m) { m.Load({}); m.VoraPixelFormat = 8; m.SetHWSW_Chk_Click(true); },
       {O::Explicit, "8", "[VORA New]", true, true, 8}},
      {"use host settings, host hardware best format",
       [](ModeSettings& m) {
         m.Load({});
         m.VoraSH = -1;
         m.SetHWSW_Chk_Click(true);
       },
       {O::Hardware, "0", "[VORA Current]", false, true, 0}},
      {"use host settings, host software best format, already selected",
       [](ModeSettings& m) { m.Load({}); m.SetHWSW_Chk_Click(true); },
       {O::Software, "0", "[VORA New]", true, false, 0}},
      {"unticking host settings goes back to best software",
       [](ModeSettings& m) {
         m.Load(Host(0, 5));
         m.SetHWSW_Chk_Click(true);
         m.SetHWSW_Chk_Click(false);
       },
       {O::Software, "0", "[Default]", false, false, 0}},
      {"written settings become the host's",
       [](ModeSettings& m) { m.Load({}); m.HWPixelFormat_Opt_Click(); m.SettingsWritten(); },
       {O::Hardware, "0", "[VORA Current]", false, true, 0}},
      // Selecting the explicit option runs its click, which retags the frame.
      {"written explicit index selects explicit",
       [](ModeSettings& m) { m.Load({}); m.PixelFormat_Tbx_LostFocus("12"); m.SettingsWritten(); },
       {O::Explicit, "12", "[New]", true, true, 12}},
      {"written explicit index when explicit was selected",
       [](ModeSettings& m) { m.Load(Host(0, 3)); m.NextPF_Cbt_Click(9); m.SettingsWritten(); },
       {O::Explicit, "4", "[VORA Current]", false, true, 4}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ModeSettings m;
    c.steps(m);
    Check(m, c.expected);
  }
}

TEST(ModeSettings, SettingsWrittenCopiesTheChoiceIntoTheHostValues) {
  ModeSettings m;
  m.Load({});
  m.PixelFormat_Tbx_LostFocus("4");
  m.ForceRedraw_Chk_Click(true);
  m.SettingsWritten();
  EXPECT_EQ(m.VoraPixelFormat, 4);
  EXPECT_EQ(m.VoraSH, 0) << "typing an index does not select the explicit option";
  EXPECT_EQ(m.VoraRedraw, -1);
}

// A host redraw of 1 is neither TRUE nor FALSE, so it never reads as current.
TEST(ModeSettings, ForceRedrawAgainstTheHostRedraw) {
  const struct {
    int32_t hostRedraw;
    bool ticked;
    const char* tag;
  } cases[] = {{1, true, "[VORA New]"},    {1, false, "[VORA New]"},
               {-1, false, "[VORA New]"},  {-1, true, "[VORA Current]"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.hostRedraw) + (c.ticked ? " ticked" : " unticked"));
    ModeSettings m;
    m.Load(Host(0, 0, c.hostRedraw));
    EXPECT_TRUE(m.view.forceRedraw);
    m.ForceRedraw_Chk_Click(c.ticked);
    EXPECT_EQ(m.view.tag, c.tag);
    EXPECT_EQ(m.view.setEnabled, std::string(c.tag) == "[VORA New]");
  }
}

TEST(ModeSettings, EightByteFileLeavesRedrawOff) {
  ModeSettings m;
  m.Load(shell::ParseHostSettings(std::string("\xFF\xFF\xFF\xFF\x00\x00\x00\x00", 8)));
  EXPECT_EQ(m.VoraRedraw, 0);
  EXPECT_FALSE(m.view.forceRedraw);
  EXPECT_FALSE(m.CurrentOGLRedraw);
}

TEST(ParseIndex, Table) {
  struct Case {
    const char* text;
    std::optional<int32_t> value;
  } cases[] = {{"7", 7},          {" 12 ", 12}, {"-5", -5},      {"+3", 3},
               {"0", 0},          {"", {}},     {"  ", {}},      {"x", {}},
               {"2147483647", 2147483647},      {"2147483648", {}}, {"-2147483648", INT32_MIN},
               {"1 2", {}},     {"1.5", 2},   {"2.5", 2},      {"2.51", 3},
               {"-3.5", -4},    {"0.4", 0},   {".5", 0},       {"7.", 7},
               {"2147483647.5", {}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(shell::ParseIndex(c.text), c.value);
  }
}

}  // namespace
