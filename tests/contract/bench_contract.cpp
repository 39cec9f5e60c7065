#include "tests/contract/bench.h"

namespace contract {

using platform::KeyAccess;
using platform::RegistryRoot;
using platform::Status;

void Test::SetUp() {
  TearDown();
  ASSERT_EQ(files().createFolder(ScratchFolder), Status::Ok);
}

void Test::TearDown() {
  deleteKeyTree(ScratchKey);
  deleteFolderTree(ScratchFolder);
}

void Test::deleteKeyTree(const std::string& key) {
  platform::OwnedKey open(registry());
  if (registry().openKey(RegistryRoot::LocalMachine, key, KeyAccess::Read, open.receive()) != Status::Ok) return;
  std::string name;
  while (registry().enumerateKey(*open, 0, name) == Status::Ok) deleteKeyTree(key + "\\" + name);
  open.close();
  ASSERT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, key), Status::Ok) << key;
}

void Test::deleteFolderTree(const std::string& folder) {
  std::vector<platform::FolderEntry> entries;
  if (files().list(folder, entries) != Status::Ok) return;
  for (const platform::FolderEntry& entry : entries) {
    const std::string below = folder + "\\" + entry.name;
    if (entry.isFolder()) {
      deleteFolderTree(below);
    } else {
      files().setAttributes(below, {});
      ASSERT_EQ(files().deleteFile(below), Status::Ok) << below;
    }
  }
  ASSERT_EQ(files().deleteFolder(folder), Status::Ok) << folder;
}

void Test::write(const std::string& name, const std::string& bytes) {
  platform::OwnedFile file(files());
  ASSERT_EQ(files().openForWriting(path(name), file.receive()), Status::Ok) << name;
  ASSERT_EQ(files().write(*file, bytes), Status::Ok) << name;
  ASSERT_EQ(file.close(), Status::Ok) << name;
}

std::string Test::content(const std::string& name) {
  std::string bytes;
  EXPECT_EQ(files().read(path(name), bytes), Status::Ok) << name;
  return bytes;
}

}  // namespace contract
