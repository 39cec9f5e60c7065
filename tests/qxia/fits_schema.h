// JSON forms against their schemas, by a validator that knows nothing of the program.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "platform/simulated/host.h"
#include "tests/support/temporary_folder.h"

/// Whether the text fits docs/<schema>.
inline ::testing::AssertionResult FitsSchema(const std::string& schema, const std::string& json) {
  const TemporaryFolder folder;
  const std::string file = folder.path() + "/instance.json";
  const std::string output = folder.path() + "/output.txt";
  simulated::WriteHostFile(file, json);
  const std::string source = SOURCE_FOLDER;
  const std::string command = "python3 '" + source + "/tests/qxia/schema.py' '" + source + "/docs/" + schema + "' '" +
                              file + "' >'" + output + "' 2>&1";
  const int status = std::system(command.c_str());
  if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << simulated::ReadHostFile(output) << json;
}
