#include "win32/handle.h"

#include <gtest/gtest.h>

#include <string>

namespace {

HANDLE OpenTempFile() {
  char dir[MAX_PATH], path[MAX_PATH];
  GetTempPathA(MAX_PATH, dir);
  GetTempFileNameA(dir, "vlm", 0, path);
  return CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                     FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
}

bool IsOpen(HANDLE h) {
  DWORD flags = 0;
  return GetHandleInformation(h, &flags) != 0;
}

TEST(UniqueHandle, ClosesOnceAndMovesOwnership) {
  HANDLE raw = OpenTempFile();
  ASSERT_NE(raw, INVALID_HANDLE_VALUE);
  {
    win32::File a(raw);
    win32::File b(std::move(a));
    EXPECT_FALSE(a);
    EXPECT_EQ(b.get(), raw);
    win32::File c;
    c = std::move(b);
    EXPECT_TRUE(IsOpen(raw));
  }
  EXPECT_FALSE(IsOpen(raw));
}

TEST(UniqueHandle, InvalidFileHandleCountsAsEmpty) {
  win32::File f(INVALID_HANDLE_VALUE);
  EXPECT_FALSE(f);
  EXPECT_EQ(f.get(), nullptr);
}

TEST(UniqueHandle, ResetDeletesGdiObjectAndReleaseKeepsIt) {
  HBRUSH brush = CreateSolidBrush(RGB(1, 2, 3));
  win32::Gdi<HBRUSH> owned(brush);
  owned.reset();
  EXPECT_EQ(GetObjectType(brush), 0u);

  HBRUSH kept = CreateSolidBrush(RGB(4, 5, 6));
  {
    win32::Gdi<HBRUSH> o(kept);
    EXPECT_EQ(o.release(), kept);
  }
  EXPECT_EQ(GetObjectType(kept), static_cast<DWORD>(OBJ_BRUSH));
  DeleteObject(kept);
}

}  // namespace
