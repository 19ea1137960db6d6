# The settings files and the data folder (engine: no Qt).
zv_engine_library(zv_ini
  SOURCES IniName.cpp HashedStringList.cpp IniText.cpp IniValues.cpp
          ZvIniFiles.cpp FileLock.cpp DiskIniFiles.cpp
          DataFolders.cpp Settings.cpp SettingsOptions.cpp MemoOptions.cpp
  DEPS zv_common zv_memo_edit ICU::uc)
