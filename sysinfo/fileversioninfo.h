#pragma once
// File version information: the version resource of one file, read as a
// whole and then interpreted (the fixed record as display texts, the string
// table entries as strings).
#include <windows.h>

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace sysinfo {

// What the system gave for one file's version resource.
struct VersionData {
  std::vector<BYTE> Bytes;  // as GetFileVersionInfoA filled them; empty on failure
  DWORD Error = 0;          // the last error of the call that failed
};

VersionData ReadVersionData(const std::string& path);

class cFileVersionInfo {
 public:
  cFileVersionInfo();  // knows the system directory, reads nothing yet
  explicit cFileVersionInfo(const VersionData& data);  // interprets given data

  void* Caller() const { return caller_; }
  void Caller(void* owner) { caller_ = owner; }
  const std::string& SystemDirectory() const { return systemDirectory_; }
  const std::string& FullPathName() const { return path_; }
  void FullPathName(std::string_view path);  // stores the path and refreshes
  bool Available() const { return available_; }
  const std::string& FileFlags() const { return fileFlags_; }
  const std::string& FileOS() const { return fileOS_; }
  const std::string& FileType() const { return fileType_; }
  const std::string& FileSubType() const { return fileSubType_; }
  const std::string& VerFile() const { return verFile_; }
  const std::string& VerProduct() const { return verProduct_; }
  const std::string& VerStructure() const { return verStructure_; }
  // Entries 0..14: "Language", "Comments", "Company Name" ... "LegalTrademarks2";
  // an index outside gives "".
  static std::string PredefinedName(int index);
  std::string PredefinedValue(int index) const;
  const std::string& Language() const { return entries_[kLanguage]; }
  const std::string& Comments() const { return entries_[kComments]; }
  const std::string& CompanyName() const { return entries_[kCompanyName]; }
  const std::string& FileDescription() const { return entries_[kFileDescription]; }
  const std::string& FileVersion() const { return entries_[kFileVersion]; }
  const std::string& InternalName() const { return entries_[kInternalName]; }
  const std::string& LegalCopyright() const { return entries_[kLegalCopyright]; }
  const std::string& LegalTrademarks() const { return entries_[kLegalTrademarks]; }
  const std::string& OriginalFilename() const { return entries_[kOriginalFilename]; }
  const std::string& ProductName() const { return entries_[kProductName]; }
  const std::string& ProductVersion() const { return entries_[kProductVersion]; }
  const std::string& PrivateBuild() const { return entries_[kPrivateBuild]; }
  const std::string& SpecialBuild() const { return entries_[kSpecialBuild]; }

  // Reads FullPathName's resource again. False when it could not be read;
  // LastError then holds the error number the failure raised.
  bool Refresh();
  DWORD LastError() const { return lastError_; }

  // Pure pieces of the interpretation.
  static std::string VersionText(DWORD ms, DWORD ls);  // "06.14.0010.8217"
  static std::string StructureText(DWORD version);     // "01.00"
  static std::string FlagsText(DWORD flags);
  static std::string OSText(DWORD os);
  // Subtypes outside the driver and font lists leave subtypeText alone.
  static void TypeTexts(DWORD type, DWORD subtype, std::string& typeText, std::string& subtypeText);
  static std::string FailureText(DWORD error);

 private:
  enum Entry {
    kLanguage,
    kComments,
    kCompanyName,
    kFileDescription,
    kFileVersion,
    kInternalName,
    kLegalCopyright,
    kLegalTrademarks,
    kOriginalFilename,
    kProductName,
    kProductVersion,
    kPrivateBuild,
    kSpecialBuild,
    kLegalTrademarks1,
    kLegalTrademarks2,
    kEntryCount
  };

  bool Interpret(const VersionData& data);
  bool Fail(DWORD error);

  void* caller_ = nullptr;
  std::string systemDirectory_;
  std::string path_;
  bool available_ = false;
  DWORD lastError_ = 0;
  std::string fileFlags_, fileOS_, fileType_, fileSubType_;
  std::string verFile_, verProduct_, verStructure_;
  std::array<std::string, kEntryCount> entries_;
};

}  // namespace sysinfo
