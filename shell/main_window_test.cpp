#include "shell/main_window.h"

#include <gtest/gtest.h>

#include "res/version.h"
#include "shell/host_settings.h"
#include "testsupport/testsupport.h"
#include "win32/handle.h"
#include "win32/ui.h"

namespace {

using namespace shell;

std::string Ints(std::initializer_list<int32_t> values) {
  std::string s;
  for (int32_t v : values)
    for (int i = 0; i < 4; ++i) s.push_back(static_cast<char>((static_cast<uint32_t>(v) >> (8 * i)) & 0xFF));
  return s;
}

class MainWindow : public ::testing::Test {
 protected:
  void SetUp() override {
    char dir[MAX_PATH];
    GetTempPathA(MAX_PATH, dir);
    path = std::string(dir) + "velmora_main_test.ini";
    DeleteFileA(path.c_str());
  }
  void TearDown() override {
    main.reset();
    DeleteFileA(path.c_str());
  }
  void Start(const std::string* fileBytes = nullptr) {
    if (fileBytes) {
      ASSERT_TRUE(ReplaceFileContents(path, *fileBytes).ok);
    }
    main = std::make_unique<VelmoraMain>(path);
    ASSERT_TRUE(main->Create());
    ShowWindow(main->hwnd(), SW_SHOW);
    testsupport::Pump();
  }
  HWND C(int id) { return main->Control(id); }
  void Click(int id) { SendMessageA(C(id), BM_CLICK, 0, 0); }
  void ClickTab(int id) {
    SendMessageA(C(id), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(3, 3));
    SendMessageA(C(id), WM_LBUTTONUP, 0, MAKELPARAM(3, 3));
  }
  bool Shown(HWND w) { return (GetWindowLongA(w, GWL_STYLE) & WS_VISIBLE) != 0; }
  bool Checked(int id) { return SendMessageA(C(id), BM_GETCHECK, 0, 0) == BST_CHECKED; }
  std::string Text(int id) { return win32::GetText(C(id)); }
  std::string FileBytes() {
    std::string b;
    EXPECT_TRUE(ReadWholeFile(path, b).ok);
    return b;
  }
  void TypeIndex(const char* text) {
    SetFocus(C(kPixelFormatTbx));
    win32::SetText(C(kPixelFormatTbx), text);
    SetFocus(C(kSpecsCbt));
  }
  std::vector<bool> PanelsShown() {
    std::vector<bool> v;
    for (int i = 0; i < 4; ++i) v.push_back(Shown(main->Panel(i)));
    return v;
  }

  std::string path;
  testsupport::MsgBoxRecorder boxes;
  std::unique_ptr<VelmoraMain> main;
};

TEST_F(MainWindow, FirstStartWithoutSettingsFile) {
  Start();
  EXPECT_EQ(main->CurrentPage(), 0);
  EXPECT_EQ(PanelsShown(), (std::vector<bool>{true, false, false, false}));
  EXPECT_FALSE(IsWindowEnabled(C(kBack)));
  EXPECT_TRUE(IsWindowEnabled(C(kNext)));
  EXPECT_EQ(Text(kSettingsFrame), "OpenGL Settings [Default]");
  EXPECT_TRUE(IsWindowEnabled(C(kSetVORAHWSW)));
  EXPECT_TRUE(Checked(kSWPixelFormatOpt));
  EXPECT_FALSE(Checked(kHWPixelFormatOpt) || Checked(kPixelFormatOpt));
  EXPECT_EQ(Text(kPixelFormatTbx), "0");
  EXPECT_EQ(Text(kSpecsTbx),
            "Select Software or Hardware mode to test; Then\r\nPress \"Check Specifications\" to update");
  EXPECT_TRUE(boxes.calls().empty());
}

TEST_F(MainWindow, LabelsFromTheVersionResource) {
  Start();
  EXPECT_EQ(Text(kVersionLabel), "Vs." + std::to_string(VELMORA_VERSION_MAJOR) + "." +
                                     std::to_string(VELMORA_VERSION_MINOR) + ".0." +
                                     std::to_string(VELMORA_VERSION_REVISION) + "  ");
  EXPECT_EQ(Text(kAttributionLabel), VELMORA_COMPANY);
  auto vs = win32::WindowRectTwips(C(kVersionLabel));
  auto at = win32::WindowRectTwips(C(kAttributionLabel));
  EXPECT_EQ(vs.top, at.top);
  EXPECT_EQ(vs.height, at.height);
  EXPECT_EQ(Text(kGLHintLbl), GLHintText());
  EXPECT_NE(GLHintText().find("settings,to download new drivers"), std::string::npos);
}

TEST_F(MainWindow, NextAsksForTheReportOnceAnsweredNo) {
  Start();
  boxes.Answer(IDNO);
  Click(kNext);
  ASSERT_EQ(boxes.calls().size(), 1u);
  EXPECT_EQ(boxes.calls()[0].text, "Do you want to 'Check Specifications' before going on?");
  EXPECT_EQ(boxes.calls()[0].title, "Just Checking!");
  EXPECT_EQ(boxes.calls()[0].style, static_cast<UINT>(MB_YESNO));
  EXPECT_TRUE(main->SpecsAsked());
  EXPECT_EQ(main->CurrentPage(), 1);
  // The Library panel shown behind the question stays visible beside page 1.
  EXPECT_EQ(PanelsShown(), (std::vector<bool>{true, true, false, false}));
  EXPECT_TRUE(IsWindowEnabled(C(kBack)));
  Click(kBack);
  Click(kNext);
  EXPECT_EQ(boxes.calls().size(), 1u) << "not asked again";
  EXPECT_EQ(PanelsShown(), (std::vector<bool>{false, true, false, false}));
}

TEST_F(MainWindow, TabLabelOfTheShownPageIsLightYellow) {
  Start();
  auto colour = [&](int id) {
    HDC dc = GetDC(C(id));
    auto brush = reinterpret_cast<HBRUSH>(
        SendMessageA(main->hwnd(), WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc),
                     reinterpret_cast<LPARAM>(C(id))));
    ReleaseDC(C(id), dc);
    LOGBRUSH lb{};
    GetObjectA(brush, sizeof lb, &lb);
    return lb.lbColor;
  };
  EXPECT_EQ(colour(kLibraryTab), 0xC0FFFFu);
  EXPECT_EQ(colour(kGeneralTab), GetSysColor(COLOR_BTNFACE));
  boxes.Answer(IDNO);
  ClickTab(kGeneralTab);
  EXPECT_EQ(colour(kGeneralTab), 0xC0FFFFu);
  EXPECT_EQ(colour(kLibraryTab), GetSysColor(COLOR_BTNFACE));
}

TEST_F(MainWindow, EightByteHostFileWithHardwareSelectsBestHardware) {
  std::string bytes = Ints({-1, 0});
  Start(&bytes);
  EXPECT_TRUE(Checked(kHWPixelFormatOpt));
  EXPECT_FALSE(Checked(kSWPixelFormatOpt));
  EXPECT_EQ(Text(kPixelFormatTbx), "0");
  EXPECT_EQ(Text(kSettingsFrame), "OpenGL Settings [VORA Current]");
  EXPECT_FALSE(IsWindowEnabled(C(kSetVORAHWSW)));
  EXPECT_FALSE(Checked(kForceRedrawChk));
  EXPECT_TRUE(main->CurrentSH());
}

TEST_F(MainWindow, WritingKeepsTheTailOfATwentyByteFile) {
  std::string bytes = Ints({0, 3, -1}) + std::string("\x01\x02\x03\x04\xFA\xFB\xFC\x00", 8);
  Start(&bytes);
  EXPECT_TRUE(Checked(kPixelFormatOpt));
  EXPECT_TRUE(Checked(kForceRedrawChk));
  Click(kHWPixelFormatOpt);
  EXPECT_EQ(Text(kSettingsFrame), "OpenGL Settings [New]");
  ASSERT_TRUE(IsWindowEnabled(C(kSetVORAHWSW)));
  Click(kSetVORAHWSW);
  EXPECT_EQ(FileBytes(), Ints({-1, 0, -1}) + bytes.substr(12));
  EXPECT_EQ(Text(kSettingsFrame), "OpenGL Settings [VORA Current]");
  EXPECT_FALSE(IsWindowEnabled(C(kSetVORAHWSW)));
}

TEST_F(MainWindow, WritingWithoutAFileCreatesTwelveBytes) {
  Start();
  TypeIndex("-5");
  EXPECT_EQ(Text(kPixelFormatTbx), "5");
  EXPECT_EQ(main->CurrentOGLPixelFormat(), 5);
  Click(kSetVORAHWSW);
  EXPECT_EQ(FileBytes(), Ints({0, 5, 0}));
  EXPECT_TRUE(Checked(kPixelFormatOpt));
}

TEST_F(MainWindow, TextThatIsNoNumberIsRefusedWithAMessage) {
  std::string bytes = Ints({0, 4, 0});
  Start(&bytes);
  TypeIndex("four");
  ASSERT_EQ(boxes.calls().size(), 1u);
  EXPECT_NE(boxes.calls()[0].text.find("\"four\" is not a pixel-format number"), std::string::npos);
  EXPECT_EQ(Text(kPixelFormatTbx), "4");
  EXPECT_EQ(main->CurrentOGLPixelFormat(), 4);
  EXPECT_EQ(Text(kSettingsFrame), "OpenGL Settings [VORA Current]");
}

TEST_F(MainWindow, LockedSettingsFileIsReportedAndLeftAlone) {
  std::string bytes = Ints({0, 2, 0});
  Start(&bytes);
  Click(kHWPixelFormatOpt);
  std::string captionBefore = Text(kSettingsFrame);
  {
    win32::File lock(CreateFileA(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(lock);
    Click(kSetVORAHWSW);
  }
  ASSERT_EQ(boxes.calls().size(), 1u);
  EXPECT_NE(boxes.calls()[0].text.find(path), std::string::npos) << "the message names the file";
  EXPECT_EQ(FileBytes(), bytes);
  EXPECT_EQ(Text(kSettingsFrame), captionBefore);
  EXPECT_TRUE(IsWindowEnabled(C(kSetVORAHWSW)));
  EXPECT_EQ(main->Mode().VoraPixelFormat, 2);
}

}  // namespace
