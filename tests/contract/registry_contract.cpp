#include <algorithm>
#include <vector>

#include "tests/contract/bench.h"

namespace contract {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::OwnedKey;
using platform::RegistryRoot;
using platform::Status;
using platform::ValueType;

class Registry : public Test {
 protected:
  Status create(const std::string& below, KeyHandle& key) {
    return registry().createKey(RegistryRoot::LocalMachine, ScratchKey + below, KeyAccess::Plain, key);
  }
  void make(const std::string& below) {
    OwnedKey key(registry());
    EXPECT_EQ(create(below, key.receive()), Status::Ok) << below;
  }
  Status open(const std::string& below, KeyAccess access, KeyHandle& key) {
    return registry().openKey(RegistryRoot::LocalMachine, ScratchKey + below, access, key);
  }
  Status query(KeyHandle key, const std::string& name, std::string& data) {
    ValueType type{};
    return registry().queryValue(key, name, type, data);
  }
};

TEST_F(Registry, Key_Missing_FileNotFound) {
  KeyHandle key;
  EXPECT_EQ(open("", KeyAccess::Read, key), Status::FileNotFound);
  EXPECT_EQ(open("\\Below\\Missing", KeyAccess::SetValue, key), Status::FileNotFound);
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), Status::FileNotFound);
}

TEST_F(Registry, CreateKey_MissingLevels_MakesAllAndOpensWhatIsThere) {
  make("\\One\\Two");
  make("\\one\\TWO");
  OwnedKey key(registry());
  ASSERT_EQ(open("\\One", KeyAccess::Read, key.receive()), Status::Ok);
  std::string name;
  EXPECT_EQ(registry().enumerateKey(*key, 0, name), Status::Ok);
  EXPECT_EQ(name, "Two");
  EXPECT_EQ(registry().enumerateKey(*key, 1, name), Status::NoMoreItems);
}

TEST_F(Registry, Text_WithAndWithoutTerminator_ReadsBackTerminated) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  struct {
    const char* situation;
    std::string written, read;
  } const cases[] = {
      {"without terminator", "Pass", std::string("Pass\0", 5)},
      {"with terminator", std::string("Pass\0", 5), std::string("Pass\0", 5)},
      {"empty without terminator", "", ""},
      {"empty with terminator", std::string(1, '\0'), std::string(1, '\0')},
      {"line breaks", "one\r\ntwo", std::string("one\r\ntwo\0", 9)},
  };
  for (const auto& c : cases) {
    ASSERT_EQ(registry().setValue(*key, "Text", ValueType::Text, c.written), Status::Ok) << c.situation;
    ValueType type{};
    std::string data;
    EXPECT_EQ(registry().queryValue(*key, "Text", type, data), Status::Ok) << c.situation;
    EXPECT_EQ(type, ValueType::Text) << c.situation;
    EXPECT_EQ(data, c.read) << c.situation;
  }
}

TEST_F(Registry, Value_EachType_ReadsBackWithTypeAndBytes) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  const std::string bytes("\x01\0\xff\x80", 4);
  for (const ValueType type : {ValueType::Binary, ValueType::Number, static_cast<ValueType>(0)}) {
    ASSERT_EQ(registry().setValue(*key, "Value", type, bytes), Status::Ok);
    ValueType found{};
    std::string data;
    EXPECT_EQ(registry().queryValue(*key, "Value", found, data), Status::Ok);
    EXPECT_EQ(found, type);
    EXPECT_EQ(data, bytes);
  }
}

TEST_F(Registry, QueryValue_AnySize_ReadsTheWholeValue) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  for (const std::size_t size : {0, 1, 1023, 1024, 1025, 5000, 70000}) {
    const std::string bytes(size, 'x');
    ASSERT_EQ(registry().setValue(*key, "Bytes", ValueType::Binary, bytes), Status::Ok) << size;
    ASSERT_EQ(registry().setValue(*key, "Text", ValueType::Text, bytes), Status::Ok) << size;
    std::string data = "left over";
    EXPECT_EQ(query(*key, "Bytes", data), Status::Ok) << size;
    EXPECT_EQ(data, bytes) << size;
    EXPECT_EQ(query(*key, "Text", data), Status::Ok) << size;
    EXPECT_EQ(data, size == 0 ? "" : bytes + '\0') << size;
  }
}

TEST_F(Registry, Value_MissingOrNamedInAnotherCase_IsToldApart) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  std::string data = "left over";
  EXPECT_EQ(query(*key, "Missing", data), Status::FileNotFound);
  EXPECT_EQ(data, "");
  EXPECT_EQ(registry().deleteValue(*key, "Missing"), Status::FileNotFound);
  ASSERT_EQ(registry().setValue(*key, "Name", ValueType::Text, "a"), Status::Ok);
  ASSERT_EQ(registry().setValue(*key, "NAME", ValueType::Text, "b"), Status::Ok);
  EXPECT_EQ(query(*key, "name", data), Status::Ok);
  EXPECT_EQ(data, std::string("b\0", 2));
  EXPECT_EQ(registry().deleteValue(*key, "nAME"), Status::Ok);
  EXPECT_EQ(query(*key, "Name", data), Status::FileNotFound);
}

TEST_F(Registry, Access_LessThanTheOperationNeeds_AccessDenied) {
  make("");
  OwnedKey reading(registry()), writing(registry());
  ASSERT_EQ(open("", KeyAccess::Read, reading.receive()), Status::Ok);
  ASSERT_EQ(open("", KeyAccess::SetValue, writing.receive()), Status::Ok);
  std::string text;
  EXPECT_EQ(registry().setValue(*reading, "Name", ValueType::Text, "a"), Status::AccessDenied);
  EXPECT_EQ(registry().setValue(*writing, "Name", ValueType::Text, "a"), Status::Ok);
  EXPECT_EQ(registry().deleteValue(*reading, "Name"), Status::AccessDenied);
  EXPECT_EQ(query(*writing, "Name", text), Status::AccessDenied);
  EXPECT_EQ(query(*reading, "Name", text), Status::Ok);
  EXPECT_EQ(registry().enumerateKey(*writing, 0, text), Status::AccessDenied);
  EXPECT_EQ(registry().enumerateValue(*writing, 0, text), Status::AccessDenied);
}

TEST_F(Registry, DeleteKey_WithKeysBelow_AccessDenied) {
  make("\\Below");
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), Status::AccessDenied);
  OwnedKey below(registry());
  ASSERT_EQ(open("\\Below", KeyAccess::Plain, below.receive()), Status::Ok);
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, std::string(ScratchKey) + "\\below"), Status::Ok);
  EXPECT_NE(registry().setValue(*below, "Name", ValueType::Text, "a"), Status::Ok) << "the key is gone";
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), Status::Ok);
}

TEST_F(Registry, Enumeration_ToItsEnd_NamesEachOnceThenNoMoreItems) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  for (const char* name : {"Beta", "alpha", "Gamma"}) {
    make("\\" + std::string(name));
    ASSERT_EQ(registry().setValue(*key, name, ValueType::Text, "x"), Status::Ok);
  }
  std::vector<std::string> keys, values;
  std::string name;
  for (std::uint32_t i = 0; registry().enumerateKey(*key, i, name) == Status::Ok; ++i) keys.push_back(name);
  for (std::uint32_t i = 0; registry().enumerateValue(*key, i, name) == Status::Ok; ++i) values.push_back(name);
  EXPECT_EQ(keys, (std::vector<std::string>{"alpha", "Beta", "Gamma"})) << "keys come sorted";
  std::sort(values.begin(), values.end());
  EXPECT_EQ(values, (std::vector<std::string>{"Beta", "Gamma", "alpha"}));
  EXPECT_EQ(registry().enumerateKey(*key, 3, name), Status::NoMoreItems);
  EXPECT_EQ(registry().enumerateValue(*key, 3, name), Status::NoMoreItems);
  EXPECT_EQ(name, "");
}

TEST_F(Registry, Enumeration_OfLongNames_GivesThemWhole) {
  OwnedKey key(registry());
  ASSERT_EQ(create("", key.receive()), Status::Ok);
  const std::string keyName(230, 'k');  // Wine takes no path of more than 259 characters
  const std::string valueName(2000, 'v');
  make("\\" + keyName);
  ASSERT_EQ(registry().setValue(*key, valueName, ValueType::Text, "x"), Status::Ok);
  std::string name;
  EXPECT_EQ(registry().enumerateKey(*key, 0, name), Status::Ok);
  EXPECT_EQ(name, keyName);
  EXPECT_EQ(registry().enumerateValue(*key, 0, name), Status::Ok);
  EXPECT_EQ(name, valueName);
}

}  // namespace contract
