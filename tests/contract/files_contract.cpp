#include <vector>

#include "tests/contract/bench.h"

namespace contract {

using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;
namespace status = platform::status;
namespace attribute = platform::attribute;

class Files : public Test {};

TEST_F(Files, Append_ToNewAndExistingFile_WritesBehindTheLastByte) {
  for (const char* text : {"one\r\n", "two\r\n"}) {
    FileHandle file;
    ASSERT_EQ(files().openForAppending(path("log.html"), file), status::Ok);
    EXPECT_EQ(files().write(file, text), status::Ok);
    EXPECT_EQ(files().close(file), status::Ok);
  }
  EXPECT_EQ(content("LOG.html"), "one\r\ntwo\r\n");
  write("log.html", "new");
  EXPECT_EQ(content("log.html"), "new");
}

TEST_F(Files, OpenFile_OthersMayReadOnly) {
  FileHandle file, second;
  ASSERT_EQ(files().openForAppending(path("log.html"), file), status::Ok);
  ASSERT_EQ(files().write(file, "text"), status::Ok);
  EXPECT_EQ(content("log.html"), "text");
  EXPECT_EQ(files().openForAppending(path("log.html"), second), status::SharingViolation);
  EXPECT_EQ(files().openForWriting(path("log.html"), second), status::SharingViolation);
  EXPECT_EQ(files().deleteFile(path("log.html")), status::SharingViolation);
  EXPECT_EQ(files().close(file), status::Ok);
  EXPECT_EQ(files().deleteFile(path("log.html")), status::Ok);
}

TEST_F(Files, ReadOnlyFile_Deleted_RefusedUntilTheAttributeIsCleared) {
  write("fixed.txt", "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), attribute::ReadOnly), status::Ok);
  EXPECT_EQ(files().deleteFile(path("fixed.txt")), status::AccessDenied);
  EXPECT_EQ(content("fixed.txt"), "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), attribute::Normal), status::Ok);
  EXPECT_EQ(files().deleteFile(path("fixed.txt")), status::Ok);
}

TEST_F(Files, ReadOnlyFile_WrittenOrReplaced_IsRefused) {
  write("fixed.txt", "old");
  write("other.txt", "new");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), attribute::ReadOnly), status::Ok);
  FileHandle file;
  EXPECT_EQ(files().openForWriting(path("fixed.txt"), file), status::AccessDenied);
  EXPECT_EQ(files().openForAppending(path("fixed.txt"), file), status::AccessDenied);
  EXPECT_EQ(files().copyFile(path("other.txt"), path("fixed.txt")), status::AccessDenied);
  EXPECT_EQ(content("fixed.txt"), "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), attribute::Normal), status::Ok);
  EXPECT_EQ(files().copyFile(path("other.txt"), path("fixed.txt")), status::Ok);
  EXPECT_EQ(content("fixed.txt"), "new");
}

TEST_F(Files, CopyFile_CarriesBytesAndReadOnlyAttribute) {
  write("source.txt", std::string("a\0b", 3));
  ASSERT_EQ(files().setAttributes(path("source.txt"), attribute::ReadOnly), status::Ok);
  ASSERT_EQ(files().copyFile(path("source.txt"), path("target.txt")), status::Ok);
  EXPECT_EQ(content("target.txt"), std::string("a\0b", 3));
  std::uint32_t found = 0;
  ASSERT_EQ(files().attributes(path("target.txt"), found), status::Ok);
  EXPECT_NE(found & attribute::ReadOnly, 0u);
}

TEST_F(Files, Failures_EachWithItsStatus) {
  write("file.txt", "text");
  ASSERT_EQ(files().createFolder(path("folder")), status::Ok);
  write("folder\\inner.txt", "text");
  std::string bytes;
  std::uint32_t bits = 0;
  FileHandle file;
  struct {
    const char* situation;
    Status found, expected;
  } const cases[] = {
      {"read a missing file", files().read(path("none.txt"), bytes), status::FileNotFound},
      {"read below a missing folder", files().read(path("none\\none.txt"), bytes), status::PathNotFound},
      {"read a folder", files().read(path("folder"), bytes), status::AccessDenied},
      {"attributes of a missing file", files().attributes(path("none.txt"), bits), status::FileNotFound},
      {"attributes below a missing folder", files().attributes(path("none\\none.txt"), bits), status::PathNotFound},
      {"set attributes of a missing file", files().setAttributes(path("none.txt"), 1), status::FileNotFound},
      {"write below a missing folder", files().openForWriting(path("none\\none.txt"), file), status::PathNotFound},
      {"write to a folder", files().openForWriting(path("folder"), file), status::AccessDenied},
      {"copy a missing file", files().copyFile(path("none.txt"), path("new.txt")), status::FileNotFound},
      {"copy to a missing folder", files().copyFile(path("file.txt"), path("none\\new.txt")), status::PathNotFound},
      {"copy onto a folder", files().copyFile(path("file.txt"), path("folder")), status::AccessDenied},
      {"copy onto itself", files().copyFile(path("file.txt"), path("FILE.txt")), status::SharingViolation},
      {"delete a missing file", files().deleteFile(path("none.txt")), status::FileNotFound},
      {"delete a file below a missing folder", files().deleteFile(path("none\\none.txt")), status::PathNotFound},
      {"delete a folder as a file", files().deleteFile(path("folder")), status::AccessDenied},
      {"create a folder that is there", files().createFolder(path("FOLDER")), status::AlreadyExists},
      {"create a folder named as a file", files().createFolder(path("file.txt")), status::AlreadyExists},
      {"create a folder below a missing one", files().createFolder(path("none\\new")), status::PathNotFound},
      {"delete a folder that is not empty", files().deleteFolder(path("folder")), status::FolderNotEmpty},
      {"delete a missing folder", files().deleteFolder(path("none")), status::FileNotFound},
      {"delete a file as a folder", files().deleteFolder(path("file.txt")), status::FolderNameInvalid},
  };
  for (const auto& c : cases) EXPECT_EQ(c.found, c.expected) << c.situation;
  EXPECT_EQ(content("file.txt"), "text");
  EXPECT_EQ(content("folder\\inner.txt"), "text");
}

TEST_F(Files, List_NamesAndSizes_SortedWithoutLetterCase) {
  ASSERT_EQ(files().createFolder(path("folder")), status::Ok);
  write("Beta.txt", "12345");
  write("alpha.txt", "");
  std::vector<FolderEntry> entries;
  ASSERT_EQ(files().list(ScratchFolder, entries), status::Ok);
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0].name, "alpha.txt");
  EXPECT_EQ(entries[1].name, "Beta.txt");
  EXPECT_EQ(entries[1].size, 5u);
  EXPECT_FALSE(entries[1].isFolder());
  EXPECT_EQ(entries[2].name, "folder");
  EXPECT_TRUE(entries[2].isFolder());
  ASSERT_EQ(files().list(path("folder"), entries), status::Ok);
  EXPECT_TRUE(entries.empty());
  EXPECT_TRUE(platform::isNotThere(files().list(path("none"), entries)));
}

TEST_F(Files, Drives_TheSystemDrive_IsFixedWithRoom) {
  bool found = false;
  for (const platform::Drive& drive : files().drives())
    found = found || (drive.letter == 'C' && drive.type == platform::DriveType::Fixed);
  EXPECT_TRUE(found);
  std::string label;
  std::uint64_t bytes = 0;
  EXPECT_EQ(files().volumeLabel('C', label), status::Ok);
  EXPECT_EQ(files().freeSpace('C', bytes), status::Ok);
  EXPECT_GT(bytes, 0u);
  EXPECT_NE(files().volumeLabel('B', label), status::Ok) << "no such drive";
  EXPECT_NE(files().freeSpace('B', bytes), status::Ok);
}

TEST_F(Files, SetAccess_GivenToAdministrators_StaysUsable) {
  write("guarded.txt", "text");
  const std::vector<platform::AccessGrant> grants = {{platform::Account::Administrators, platform::AccessRight::Full},
                                                     {platform::Account::LocalSystem, platform::AccessRight::Full},
                                                     {platform::Account::Users, platform::AccessRight::ReadAndExecute}};
  EXPECT_EQ(files().setAccess(path("guarded.txt"), grants), status::Ok);
  EXPECT_EQ(content("guarded.txt"), "text");
  EXPECT_NE(files().setAccess(path("none.txt"), grants), status::Ok);
}

}  // namespace contract
