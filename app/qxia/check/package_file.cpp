#include "app/qxia/check/package_file.h"

#include <libmsi.h>

#include <memory>

#include "base/text.h"

namespace qxia::check {
namespace {

struct Unreference {
  void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using Held = std::unique_ptr<T, Unreference>;

/// The library tells of tables that are not there on the error output; here that is no failure.
class QuietLibrary {
 public:
  QuietLibrary() : before_(g_log_set_default_handler(PassOver, nullptr)) {}
  ~QuietLibrary() { g_log_set_default_handler(before_, nullptr); }
  QuietLibrary(const QuietLibrary&) = delete;
  QuietLibrary& operator=(const QuietLibrary&) = delete;

 private:
  static void PassOver(const char*, GLogLevelFlags, const char*, void*) {}

  GLogFunc before_;
};

struct FreeText {
  void operator()(char* text) const { g_free(text); }
};

/// Runs a query and hands each row to `row`; false when the table is not there or cannot be read.
template <class Row>
bool ForEachRow(LibmsiDatabase* database, const char* query, Row row) {
  GError* failure = nullptr;
  const Held<LibmsiQuery> view(libmsi_query_new(database, query, &failure));
  if (!view || libmsi_query_execute(view.get(), nullptr, &failure) == FALSE) {
    g_clear_error(&failure);
    return false;
  }
  while (true) {
    const Held<LibmsiRecord> record(libmsi_query_fetch(view.get(), &failure));
    if (!record) break;
    row(record.get());
  }
  const bool whole = failure == nullptr;
  g_clear_error(&failure);
  return whole;
}

std::string Field(LibmsiRecord* record, unsigned number) {
  const std::unique_ptr<char, FreeText> text(libmsi_record_get_string(record, number));
  return text ? text.get() : "";
}

bool ReadProperties(LibmsiDatabase* database, PackageFile& package) {
  const bool read = ForEachRow(database, "SELECT `Property`, `Value` FROM `Property`", [&](LibmsiRecord* record) {
    const std::string property = Field(record, 1);
    if (property == "ProductName") package.name = Field(record, 2);
    if (property == "ProductVersion") package.version = Field(record, 2);
    if (property == "ProductCode") package.code = Field(record, 2);
    if (property == "REBOOT" && assistant::StartsWithIgnoringCase(Field(record, 2), "F")) package.restarts = true;
  });
  return read && !package.code.empty();
}

void ReadSequence(LibmsiDatabase* database, PackageFile& package) {
  ForEachRow(database, "SELECT `Action` FROM `InstallExecuteSequence`", [&](LibmsiRecord* record) {
    const std::string action = Field(record, 1);
    if (action == "ScheduleReboot" || action == "ForceReboot") package.restarts = true;
  });
}

void ReadPlatform(LibmsiDatabase* database, PackageFile& package) {
  GError* failure = nullptr;
  const Held<LibmsiSummaryInfo> summary(libmsi_summary_info_new(database, 0, &failure));
  if (summary) {
    const char* text = libmsi_summary_info_get_string(summary.get(), LIBMSI_PROPERTY_TEMPLATE, &failure);
    const std::string platform = text == nullptr ? "" : text;
    package.isFor64Bit = assistant::StartsWithIgnoringCase(platform, "x64") ||
                         assistant::StartsWithIgnoringCase(platform, "Intel64") ||
                         assistant::StartsWithIgnoringCase(platform, "AMD64");
  }
  g_clear_error(&failure);
}

}  // namespace

PackageFile ReadPackage(const std::string& hostPath) {
  const QuietLibrary quiet;
  PackageFile package;
  GError* failure = nullptr;
  const Held<LibmsiDatabase> database(
      libmsi_database_new(hostPath.c_str(), LIBMSI_DB_FLAGS_READONLY, nullptr, &failure));
  if (!database) {
    package.failure = failure == nullptr ? "it is no package" : failure->message;
    g_clear_error(&failure);
    return package;
  }
  package.isRead = ReadProperties(database.get(), package);
  if (!package.isRead) package.failure = "its Property table tells no ProductCode";
  ReadSequence(database.get(), package);
  ReadPlatform(database.get(), package);
  return package;
}

}  // namespace qxia::check
