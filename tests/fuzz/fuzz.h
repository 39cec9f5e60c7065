// What the fuzz targets stand on. A target is one file, *_fuzz.cpp, that defines Fuzz.
#pragma once

#include <string>

#include "base/run.h"
#include "platform/forwarding.h"
#include "platform/simulated/workstation.h"
#include "tests/support/temporary_folder.h"

/// Reads one input. What it raises is a finding, as is what a sanitizer sees.
void Fuzz(const std::string& input);

/// A finding, told with this text, where it does not hold.
void Require(bool holds, const char* what);

/// Cuts the first line off the text, without its line feed; all of it where there is none.
std::string TakeLine(std::string& text);

/// The path of a host file with this content. Another call overwrites it.
std::string HostFile(const std::string& bytes);

/// The simulated workstation, but that its every file holds the same text and none is written.
class OneText : public platform::ForwardingPlatform {
 public:
  explicit OneText(platform::Platform& inner) : ForwardingPlatform(inner), files_(inner.files()) {}

  platform::Files& files() override { return files_; }
  void text(const std::string& bytes) { files_.bytes = bytes; }

 private:
  class Files : public platform::ForwardingFiles {
   public:
    using ForwardingFiles::ForwardingFiles;
    platform::Status read(const std::string&, std::string& read) override {
      read = bytes;
      return platform::Status::Ok;
    }

    std::string bytes;
  };
  Files files_;
};

/// A silent run that logs nothing, on such a machine.
struct Bench {
  Bench();

  TemporaryFolder folder;
  simulated::Workstation machine{folder.path() + "/machine"};
  OneText view{machine};
  assistant::Run run{view};
};

/// One that many inputs share: they ask the machine and do not change it. What it notes all the same is dropped now
/// and then.
Bench& SharedBench();
