#include "tests/qxia/package_file.h"

#include <libmsi.h>

#include <memory>
#include <stdexcept>

namespace {

void Require(bool done, const char* what) {
  if (!done) throw std::runtime_error(std::string("the test's package cannot be made: ") + what);
}

void Execute(LibmsiDatabase* database, const std::string& query) {
  LibmsiQuery* prepared = libmsi_query_new(database, query.c_str(), nullptr);
  Require(prepared != nullptr && libmsi_query_execute(prepared, nullptr, nullptr), query.c_str());
  g_object_unref(prepared);
}

}  // namespace

void WritePackageFile(const std::string& hostPath, const PackageProperties& properties, const std::string& platforms,
                      const std::vector<std::string>& actions) {
  LibmsiDatabase* database = libmsi_database_new(hostPath.c_str(), LIBMSI_DB_FLAGS_CREATE, nullptr, nullptr);
  Require(database != nullptr, hostPath.c_str());
  Execute(database,
          "CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` CHAR(0) NOT NULL PRIMARY KEY `Property`)");
  for (const auto& [name, value] : properties)
    Execute(database, "INSERT INTO `Property` (`Property`, `Value`) VALUES ('" + name + "', '" + value + "')");
  Execute(database,
          "CREATE TABLE `InstallExecuteSequence` (`Action` CHAR(72) NOT NULL, `Condition` CHAR(255), `Sequence` SHORT "
          "PRIMARY KEY `Action`)");
  for (const std::string& action : actions)
    Execute(database, "INSERT INTO `InstallExecuteSequence` (`Action`, `Sequence`) VALUES ('" + action + "', 6600)");
  LibmsiSummaryInfo* summary = libmsi_summary_info_new(database, 3, nullptr);
  Require(libmsi_summary_info_set_string(summary, LIBMSI_PROPERTY_TEMPLATE, (platforms + ";1033").c_str(), nullptr) &&
              libmsi_summary_info_persist(summary, nullptr) && libmsi_database_commit(database, nullptr),
          "its summary");
  g_object_unref(summary);
  g_object_unref(database);
}
