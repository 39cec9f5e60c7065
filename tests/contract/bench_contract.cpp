#include "tests/contract/bench.h"

namespace contract {

using platform::KeyAccess;
using platform::RegistryRoot;
namespace status = platform::status;
namespace attribute = platform::attribute;

void Test::SetUp() {
  TearDown();
  ASSERT_EQ(files().createFolder(ScratchFolder), status::Ok);
}

void Test::TearDown() {
  deleteKeyTree(ScratchKey);
  deleteFolderTree(ScratchFolder);
}

void Test::deleteKeyTree(const std::string& key) {
  platform::KeyHandle open;
  if (registry().openKey(RegistryRoot::LocalMachine, key, KeyAccess::Read, open) != status::Ok) return;
  std::string name;
  while (registry().enumerateKey(open, 0, 256, name) == status::Ok) deleteKeyTree(key + "\\" + name);
  registry().closeKey(open);
  ASSERT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, key), status::Ok) << key;
}

void Test::deleteFolderTree(const std::string& folder) {
  std::vector<platform::FolderEntry> entries;
  if (files().list(folder, entries) != status::Ok) return;
  for (const platform::FolderEntry& entry : entries) {
    const std::string below = folder + "\\" + entry.name;
    if (entry.isFolder()) {
      deleteFolderTree(below);
    } else {
      files().setAttributes(below, attribute::Normal);
      ASSERT_EQ(files().deleteFile(below), status::Ok) << below;
    }
  }
  ASSERT_EQ(files().deleteFolder(folder), status::Ok) << folder;
}

void Test::write(const std::string& name, const std::string& bytes) {
  platform::FileHandle file;
  ASSERT_EQ(files().openForWriting(path(name), file), status::Ok) << name;
  ASSERT_EQ(files().write(file, bytes), status::Ok) << name;
  ASSERT_EQ(files().close(file), status::Ok) << name;
}

std::string Test::content(const std::string& name) {
  std::string bytes;
  EXPECT_EQ(files().read(path(name), bytes), status::Ok) << name;
  return bytes;
}

}  // namespace contract
