#include <vector>

#include "tests/contract/bench.h"

namespace contract {

using platform::Attributes;
using platform::FileHandle;
using platform::FolderEntry;
using platform::Status;

class Files : public Test {};

TEST_F(Files, FullPath_StartsAtTheCurrentFolder) {
  const struct {
    const char* given;
    const char* full;
  } rows[] = {{"C:\\a\\..\\b.txt", "C:\\b.txt"},
              {"C:\\", "C:\\"},
              {"C:\\none\\x.txt", "C:\\none\\x.txt"},
              {"\\\\server\\share\\x.txt", "\\\\server\\share\\x.txt"}};
  for (const auto& row : rows) EXPECT_EQ(files().fullPath(row.given), row.full) << row.given;
  const std::string current = files().fullPath(".");
  ASSERT_GE(current.size(), 3u);
  EXPECT_EQ(current.substr(1, 2), ":\\");
  EXPECT_EQ(files().fullPath("x.txt"), current + (current.back() == '\\' ? "x.txt" : "\\x.txt"));
  EXPECT_EQ(files().fullPath("\\x.txt"), current.substr(0, 3) + "x.txt");
}

TEST_F(Files, Append_ToNewAndExistingFile_WritesBehindTheLastByte) {
  for (const char* text : {"one\r\n", "two\r\n"}) {
    FileHandle file;
    ASSERT_EQ(files().openForAppending(path("log.html"), file), Status::Ok);
    EXPECT_EQ(files().write(file, text), Status::Ok);
    EXPECT_EQ(files().close(file), Status::Ok);
  }
  EXPECT_EQ(content("LOG.html"), "one\r\ntwo\r\n");
  write("log.html", "new");
  EXPECT_EQ(content("log.html"), "new");
}

TEST_F(Files, OpenFile_OthersMayReadOnly) {
  FileHandle file, second;
  ASSERT_EQ(files().openForAppending(path("log.html"), file), Status::Ok);
  ASSERT_EQ(files().write(file, "text"), Status::Ok);
  EXPECT_EQ(content("log.html"), "text");
  EXPECT_EQ(files().openForAppending(path("log.html"), second), Status::SharingViolation);
  EXPECT_EQ(files().openForWriting(path("log.html"), second), Status::SharingViolation);
  EXPECT_EQ(files().deleteFile(path("log.html")), Status::SharingViolation);
  EXPECT_EQ(files().close(file), Status::Ok);
  EXPECT_EQ(files().deleteFile(path("log.html")), Status::Ok);
}

TEST_F(Files, ReadOnlyFile_Deleted_RefusedUntilTheAttributeIsCleared) {
  write("fixed.txt", "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), {.readOnly = true}), Status::Ok);
  EXPECT_EQ(files().deleteFile(path("fixed.txt")), Status::AccessDenied);
  EXPECT_EQ(content("fixed.txt"), "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), {}), Status::Ok);
  EXPECT_EQ(files().deleteFile(path("fixed.txt")), Status::Ok);
}

TEST_F(Files, ReadOnlyFile_WrittenOrReplaced_IsRefused) {
  write("fixed.txt", "old");
  write("other.txt", "new");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), {.readOnly = true}), Status::Ok);
  FileHandle file;
  EXPECT_EQ(files().openForWriting(path("fixed.txt"), file), Status::AccessDenied);
  EXPECT_EQ(files().openForAppending(path("fixed.txt"), file), Status::AccessDenied);
  EXPECT_EQ(files().copyFile(path("other.txt"), path("fixed.txt")), Status::AccessDenied);
  EXPECT_EQ(content("fixed.txt"), "old");
  ASSERT_EQ(files().setAttributes(path("fixed.txt"), {}), Status::Ok);
  EXPECT_EQ(files().copyFile(path("other.txt"), path("fixed.txt")), Status::Ok);
  EXPECT_EQ(content("fixed.txt"), "new");
}

TEST_F(Files, HiddenOrSystemFile_IsReplacedByNoCopyButDeleted) {
  write("other.txt", "new");
  for (const Attributes& guarding : {Attributes{.hidden = true}, Attributes{.system = true}}) {
    write("guarded.txt", "old");
    ASSERT_EQ(files().setAttributes(path("guarded.txt"), guarding), Status::Ok);
    EXPECT_EQ(files().copyFile(path("other.txt"), path("guarded.txt")), Status::AccessDenied);
    EXPECT_EQ(content("guarded.txt"), "old");
    EXPECT_EQ(files().deleteFile(path("guarded.txt")), Status::Ok);
  }
}

TEST_F(Files, FolderWithAttributes_IsListedAndDeletedUnlessItIsReadOnly) {
  for (const Attributes& wanted :
       {Attributes{}, Attributes{.hidden = true}, Attributes{.system = true}, Attributes{.readOnly = true}}) {
    ASSERT_EQ(files().createFolder(path("folder")), Status::Ok);
    write("folder\\file.txt", "text");
    ASSERT_EQ(files().setAttributes(path("folder\\file.txt"), {.hidden = true, .system = true}), Status::Ok);
    ASSERT_EQ(files().setAttributes(path("folder"), wanted), Status::Ok);
    std::vector<platform::FolderEntry> entries;
    EXPECT_EQ(files().list(path("folder"), entries), Status::Ok);
    EXPECT_EQ(entries.size(), 1U);
    EXPECT_EQ(files().deleteFile(path("folder\\file.txt")), Status::Ok);
    Attributes found;
    ASSERT_EQ(files().attributes(path("folder"), found), Status::Ok);
    EXPECT_EQ(found.hidden, wanted.hidden);
    EXPECT_EQ(found.system, wanted.system);
    // Wine keeps no folder read-only.
    EXPECT_EQ(files().deleteFolder(path("folder")), found.readOnly ? Status::AccessDenied : Status::Ok);
    ASSERT_EQ(files().setAttributes(path("folder"), {}), found.readOnly ? Status::Ok : Status::FileNotFound);
    EXPECT_EQ(files().deleteFolder(path("folder")), found.readOnly ? Status::Ok : Status::FileNotFound);
  }
}

TEST_F(Files, CopyFile_CarriesBytesAndReadOnlyAttribute) {
  write("source.txt", std::string("a\0b", 3));
  ASSERT_EQ(files().setAttributes(path("source.txt"), {.readOnly = true}), Status::Ok);
  ASSERT_EQ(files().copyFile(path("source.txt"), path("target.txt")), Status::Ok);
  EXPECT_EQ(content("target.txt"), std::string("a\0b", 3));
  Attributes found;
  ASSERT_EQ(files().attributes(path("target.txt"), found), Status::Ok);
  EXPECT_EQ(found, (Attributes{.readOnly = true, .archive = true}));
}

TEST_F(Files, Attributes_EachThatCanBeSet_ReadsBackAlone) {
  write("file.txt", "text");
  const Attributes settable[] = {{.readOnly = true}, {.hidden = true}, {.system = true}, {}};
  for (const Attributes& wanted : settable) {
    ASSERT_EQ(files().setAttributes(path("file.txt"), wanted), Status::Ok);
    Attributes found{.readOnly = true, .hidden = true};
    ASSERT_EQ(files().attributes(path("file.txt"), found), Status::Ok);
    found.archive = false;  // Wine reports it for every file
    EXPECT_EQ(found, wanted);
  }
  Attributes folder;
  ASSERT_EQ(files().attributes(ScratchFolder, folder), Status::Ok);
  EXPECT_TRUE(folder.folder);
  EXPECT_FALSE(folder.link);
  Attributes untouched{.hidden = true};
  EXPECT_EQ(files().attributes(path("none.txt"), untouched), Status::FileNotFound);
  EXPECT_EQ(untouched, Attributes{.hidden = true});
}

TEST_F(Files, Failures_EachWithItsStatus) {
  write("file.txt", "text");
  ASSERT_EQ(files().createFolder(path("folder")), Status::Ok);
  write("folder\\inner.txt", "text");
  std::string bytes;
  Attributes attributes;
  FileHandle file;
  struct {
    const char* situation;
    Status found, expected;
  } const cases[] = {
      {"read a missing file", files().read(path("none.txt"), bytes), Status::FileNotFound},
      {"read below a missing folder", files().read(path("none\\none.txt"), bytes), Status::PathNotFound},
      {"read a folder", files().read(path("folder"), bytes), Status::AccessDenied},
      {"attributes of a missing file", files().attributes(path("none.txt"), attributes), Status::FileNotFound},
      {"attributes below a missing folder", files().attributes(path("none\\none.txt"), attributes),
       Status::PathNotFound},
      {"set attributes of a missing file", files().setAttributes(path("none.txt"), {.readOnly = true}),
       Status::FileNotFound},
      {"write below a missing folder", files().openForWriting(path("none\\none.txt"), file), Status::PathNotFound},
      {"write to a folder", files().openForWriting(path("folder"), file), Status::AccessDenied},
      {"copy a missing file", files().copyFile(path("none.txt"), path("new.txt")), Status::FileNotFound},
      {"copy to a missing folder", files().copyFile(path("file.txt"), path("none\\new.txt")), Status::PathNotFound},
      {"copy onto a folder", files().copyFile(path("file.txt"), path("folder")), Status::AccessDenied},
      {"copy onto itself", files().copyFile(path("file.txt"), path("FILE.txt")), Status::SharingViolation},
      {"delete a missing file", files().deleteFile(path("none.txt")), Status::FileNotFound},
      {"delete a file below a missing folder", files().deleteFile(path("none\\none.txt")), Status::PathNotFound},
      {"delete a folder as a file", files().deleteFile(path("folder")), Status::AccessDenied},
      {"create a folder that is there", files().createFolder(path("FOLDER")), Status::AlreadyExists},
      {"create a folder named as a file", files().createFolder(path("file.txt")), Status::AlreadyExists},
      {"create a folder below a missing one", files().createFolder(path("none\\new")), Status::PathNotFound},
      {"delete a folder that is not empty", files().deleteFolder(path("folder")), Status::FolderNotEmpty},
      {"delete a missing folder", files().deleteFolder(path("none")), Status::FileNotFound},
      {"delete a file as a folder", files().deleteFolder(path("file.txt")), Status::FolderNameInvalid},
  };
  for (const auto& c : cases) EXPECT_EQ(c.found, c.expected) << c.situation;
  EXPECT_EQ(content("file.txt"), "text");
  EXPECT_EQ(content("folder\\inner.txt"), "text");
}

TEST_F(Files, List_NamesAndSizes_SortedWithoutLetterCase) {
  ASSERT_EQ(files().createFolder(path("folder")), Status::Ok);
  write("Beta.txt", "12345");
  write("alpha.txt", "");
  std::vector<FolderEntry> entries;
  ASSERT_EQ(files().list(ScratchFolder, entries), Status::Ok);
  ASSERT_EQ(entries.size(), 3u);
  EXPECT_EQ(entries[0].name, "alpha.txt");
  EXPECT_EQ(entries[1].name, "Beta.txt");
  EXPECT_EQ(entries[1].size, 5u);
  EXPECT_FALSE(entries[1].isFolder());
  EXPECT_EQ(entries[2].name, "folder");
  EXPECT_TRUE(entries[2].isFolder());
  ASSERT_EQ(files().list(path("folder"), entries), Status::Ok);
  EXPECT_TRUE(entries.empty());
  EXPECT_TRUE(platform::IsNotThere(files().list(path("none"), entries)));
}

TEST_F(Files, Drives_TheSystemDrive_IsFixedWithRoom) {
  bool found = false;
  for (const platform::Drive& drive : files().drives())
    found = found || (drive.letter == 'C' && drive.type == platform::DriveType::Fixed);
  EXPECT_TRUE(found);
  std::string label;
  std::uint64_t bytes = 0;
  EXPECT_EQ(files().volumeLabel('C', label), Status::Ok);
  EXPECT_EQ(files().freeSpace('C', bytes), Status::Ok);
  EXPECT_GT(bytes, 0u);
  EXPECT_NE(files().volumeLabel('B', label), Status::Ok) << "no such drive";
  EXPECT_NE(files().freeSpace('B', bytes), Status::Ok);
}

TEST_F(Files, Access_SaysWhetherOrdinaryUsersMayWrite) {
  using platform::AccessGrant;
  using platform::AccessRight;
  using platform::Account;
  const std::vector<AccessGrant> tight = {{Account::Administrators, AccessRight::Full},
                                          {Account::LocalSystem, AccessRight::Full},
                                          {Account::Users, AccessRight::ReadAndExecute}};
  ASSERT_EQ(files().createFolder(path("folder")), Status::Ok);
  write("folder\\file.txt", "text");
  for (const char* name : {"folder", "folder\\file.txt"}) {
    const auto open = [&] {
      bool mayWrite = false;
      EXPECT_EQ(files().ordinaryUsersMayWrite(path(name), mayWrite), Status::Ok) << name;
      return mayWrite;
    };
    EXPECT_EQ(files().setOwner(path(name), Account::Administrators), Status::Ok) << name;
    EXPECT_EQ(files().setAccess(path(name), tight), Status::Ok) << name;
    EXPECT_FALSE(open()) << name;
    EXPECT_EQ(files().addAccess(path(name), tight), Status::Ok) << name;
    EXPECT_FALSE(open()) << name;
    EXPECT_TRUE(bench().openToAll(path(name))) << name;
    EXPECT_TRUE(open()) << name;
    EXPECT_EQ(files().addAccess(path(name), tight), Status::Ok) << name;
    EXPECT_TRUE(open()) << name << ": what was granted stays";
    EXPECT_EQ(files().setAccess(path(name), tight), Status::Ok) << name;
    EXPECT_FALSE(open()) << name;
    write("folder\\file.txt", "new");
    EXPECT_EQ(content("folder\\file.txt"), "new") << name;
  }
  bool mayWrite = true;
  const Status missing[] = {files().setOwner(path("none"), Account::Administrators),
                            files().setAccess(path("none"), tight), files().addAccess(path("none"), tight),
                            files().ordinaryUsersMayWrite(path("none"), mayWrite)};
  for (const Status status : missing) EXPECT_EQ(status, Status::FileNotFound);
  EXPECT_FALSE(mayWrite);
}

TEST_F(Files, NumberOfNames_CountsHardLinks) {
  write("file.txt", "text");
  std::uint32_t names = 7;
  EXPECT_EQ(files().numberOfNames(path("none.txt"), names), Status::FileNotFound);
  EXPECT_EQ(names, 0U);
  EXPECT_EQ(files().numberOfNames(path("file.txt"), names), Status::Ok);
  EXPECT_EQ(names, 1U);
  ASSERT_TRUE(bench().addName(path("file.txt"), path("second.txt")));
  EXPECT_EQ(files().numberOfNames(path("file.txt"), names), Status::Ok);
  EXPECT_EQ(names, 2U);
}

TEST_F(Files, Move_ReplacesButNotAReadOnlyFile) {
  write("new.txt", "new");
  write("old.txt", "old");
  ASSERT_EQ(files().setAttributes(path("old.txt"), {.readOnly = true}), Status::Ok);
  EXPECT_EQ(files().moveFile(path("new.txt"), path("old.txt")), Status::AccessDenied);
  EXPECT_EQ(content("old.txt"), "old");
  ASSERT_EQ(files().setAttributes(path("old.txt"), {}), Status::Ok);
  EXPECT_EQ(files().moveFile(path("new.txt"), path("OLD.txt")), Status::Ok);
  EXPECT_EQ(content("old.txt"), "new");
  Attributes attributes;
  EXPECT_EQ(files().attributes(path("new.txt"), attributes), Status::FileNotFound);
  EXPECT_EQ(files().moveFile(path("old.txt"), path("other.txt")), Status::Ok);
  EXPECT_EQ(content("other.txt"), "new");
  EXPECT_EQ(files().moveFile(path("none.txt"), path("other.txt")), Status::FileNotFound);
  EXPECT_EQ(files().moveFile(path("other.txt"), path("none\\other.txt")), Status::PathNotFound);
  EXPECT_EQ(content("other.txt"), "new");
}

}  // namespace contract
