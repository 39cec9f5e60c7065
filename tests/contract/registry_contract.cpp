#include <algorithm>
#include <vector>

#include "tests/contract/bench.h"

namespace contract {

using platform::KeyAccess;
using platform::KeyHandle;
using platform::RegistryRoot;
using platform::Status;
using platform::ValueType;
namespace status = platform::status;

class Registry : public Test {
 protected:
  KeyHandle create(const std::string& below, KeyAccess access = KeyAccess::Plain) {
    KeyHandle key;
    EXPECT_EQ(registry().createKey(RegistryRoot::LocalMachine, ScratchKey + below, access, key), status::Ok) << below;
    return key;
  }
  Status open(const std::string& below, KeyAccess access, KeyHandle& key) {
    return registry().openKey(RegistryRoot::LocalMachine, ScratchKey + below, access, key);
  }
  Status query(KeyHandle key, const std::string& name, std::size_t capacity, std::string& data) {
    ValueType type{};
    return registry().queryValue(key, name, capacity, type, data);
  }
};

TEST_F(Registry, Key_Missing_FileNotFound) {
  KeyHandle key;
  EXPECT_EQ(open("", KeyAccess::Read, key), status::FileNotFound);
  EXPECT_EQ(open("\\Below\\Missing", KeyAccess::SetValue, key), status::FileNotFound);
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), status::FileNotFound);
}

TEST_F(Registry, CreateKey_MissingLevels_MakesAllAndOpensWhatIsThere) {
  registry().closeKey(create("\\One\\Two"));
  registry().closeKey(create("\\one\\TWO"));
  KeyHandle key;
  ASSERT_EQ(open("\\One", KeyAccess::Read, key), status::Ok);
  std::string name;
  EXPECT_EQ(registry().enumerateKey(key, 0, 256, name), status::Ok);
  EXPECT_EQ(name, "Two");
  EXPECT_EQ(registry().enumerateKey(key, 1, 256, name), status::NoMoreItems);
  registry().closeKey(key);
}

TEST_F(Registry, Text_WithAndWithoutTerminator_ReadsBackTerminated) {
  const KeyHandle key = create("");
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
    ASSERT_EQ(registry().setValue(key, "Text", ValueType::Text, c.written), status::Ok) << c.situation;
    ValueType type{};
    std::string data;
    EXPECT_EQ(registry().queryValue(key, "Text", 1024, type, data), status::Ok) << c.situation;
    EXPECT_EQ(type, ValueType::Text) << c.situation;
    EXPECT_EQ(data, c.read) << c.situation;
  }
  registry().closeKey(key);
}

TEST_F(Registry, Value_EachType_ReadsBackWithTypeAndBytes) {
  const KeyHandle key = create("");
  const std::string bytes("\x01\0\xff\x80", 4);
  for (const ValueType type : {ValueType::Binary, ValueType::Number, static_cast<ValueType>(0)}) {
    ASSERT_EQ(registry().setValue(key, "Value", type, bytes), status::Ok);
    ValueType found{};
    std::string data;
    EXPECT_EQ(registry().queryValue(key, "Value", 4, found, data), status::Ok);
    EXPECT_EQ(found, type);
    EXPECT_EQ(data, bytes);
  }
  registry().closeKey(key);
}

TEST_F(Registry, QueryValue_BufferSizes_MoreDataBelowTheSize) {
  const KeyHandle key = create("");
  ASSERT_EQ(registry().setValue(key, "Text", ValueType::Text, std::string(1023, 'x')), status::Ok);
  std::string data;
  EXPECT_EQ(query(key, "Text", 1024, data), status::Ok);
  EXPECT_EQ(data, std::string(1023, 'x') + '\0');
  data = "left over";
  EXPECT_EQ(query(key, "Text", 1023, data), status::MoreData);
  EXPECT_EQ(data, "");
  registry().closeKey(key);
}

TEST_F(Registry, Value_MissingOrNamedInAnotherCase_IsToldApart) {
  const KeyHandle key = create("");
  std::string data = "left over";
  EXPECT_EQ(query(key, "Missing", 10, data), status::FileNotFound);
  EXPECT_EQ(data, "");
  EXPECT_EQ(registry().deleteValue(key, "Missing"), status::FileNotFound);
  ASSERT_EQ(registry().setValue(key, "Name", ValueType::Text, "a"), status::Ok);
  ASSERT_EQ(registry().setValue(key, "NAME", ValueType::Text, "b"), status::Ok);
  EXPECT_EQ(query(key, "name", 10, data), status::Ok);
  EXPECT_EQ(data, std::string("b\0", 2));
  EXPECT_EQ(registry().deleteValue(key, "nAME"), status::Ok);
  EXPECT_EQ(query(key, "Name", 10, data), status::FileNotFound);
  registry().closeKey(key);
}

TEST_F(Registry, Access_LessThanTheOperationNeeds_AccessDenied) {
  registry().closeKey(create(""));
  KeyHandle reading, writing;
  ASSERT_EQ(open("", KeyAccess::Read, reading), status::Ok);
  ASSERT_EQ(open("", KeyAccess::SetValue, writing), status::Ok);
  std::string text;
  EXPECT_EQ(registry().setValue(reading, "Name", ValueType::Text, "a"), status::AccessDenied);
  EXPECT_EQ(registry().setValue(writing, "Name", ValueType::Text, "a"), status::Ok);
  EXPECT_EQ(registry().deleteValue(reading, "Name"), status::AccessDenied);
  EXPECT_EQ(query(writing, "Name", 10, text), status::AccessDenied);
  EXPECT_EQ(query(reading, "Name", 10, text), status::Ok);
  EXPECT_EQ(registry().enumerateKey(writing, 0, 256, text), status::AccessDenied);
  EXPECT_EQ(registry().enumerateValue(writing, 0, 256, text), status::AccessDenied);
  registry().closeKey(reading);
  registry().closeKey(writing);
}

TEST_F(Registry, DeleteKey_WithKeysBelow_AccessDenied) {
  registry().closeKey(create("\\Below"));
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), status::AccessDenied);
  KeyHandle below;
  ASSERT_EQ(open("\\Below", KeyAccess::Plain, below), status::Ok);
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, std::string(ScratchKey) + "\\below"), status::Ok);
  EXPECT_NE(registry().setValue(below, "Name", ValueType::Text, "a"), status::Ok) << "the key is gone";
  registry().closeKey(below);
  EXPECT_EQ(registry().deleteKey(RegistryRoot::LocalMachine, ScratchKey), status::Ok);
}

TEST_F(Registry, Enumeration_ToItsEnd_NamesEachOnceThenNoMoreItems) {
  const KeyHandle key = create("");
  for (const char* name : {"Beta", "alpha", "Gamma"}) {
    registry().closeKey(create("\\" + std::string(name)));
    ASSERT_EQ(registry().setValue(key, name, ValueType::Text, "x"), status::Ok);
  }
  std::vector<std::string> keys, values;
  std::string name;
  for (std::uint32_t i = 0; registry().enumerateKey(key, i, 256, name) == status::Ok; ++i) keys.push_back(name);
  for (std::uint32_t i = 0; registry().enumerateValue(key, i, 256, name) == status::Ok; ++i) values.push_back(name);
  EXPECT_EQ(keys, (std::vector<std::string>{"alpha", "Beta", "Gamma"})) << "keys come sorted";
  std::sort(values.begin(), values.end());
  EXPECT_EQ(values, (std::vector<std::string>{"Beta", "Gamma", "alpha"}));
  EXPECT_EQ(registry().enumerateKey(key, 3, 256, name), status::NoMoreItems);
  EXPECT_EQ(registry().enumerateValue(key, 3, 256, name), status::NoMoreItems);
  EXPECT_EQ(registry().enumerateKey(key, 0, 5, name), status::MoreData) << "no room for the terminating zero";
  EXPECT_EQ(registry().enumerateKey(key, 0, 6, name), status::Ok);
  registry().closeKey(key);
}

}  // namespace contract
