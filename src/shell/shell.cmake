# Start-up, instance check and hand-over, argument pass, the main object (QtCore/QtNetwork).
zv_service_library(zv_shell
  SOURCES RunOnce.cpp RunOnceSend.cpp HandOverFrame.cpp HandOver.cpp HandOverServer.cpp Switches.cpp CommandLine.cpp Language.cpp
          MainFormHelper.cpp DocumentClose.cpp FileMonitor.cpp
          TailKeywords.cpp CrashKeeper.cpp CrashWriter.cpp MruList.cpp FileQue.cpp Sessions.cpp
          DocumentMemory.cpp DocumentFileInfo.cpp WindowLayouts.cpp TerminationWatch.cpp MainForm.cpp
          Startup.cpp ActionList.cpp KeyMap.cpp
  DEPS zv_common zv_platform zv_ini zv_memo_store zv_styles Qt6::Network pugixml::pugixml)
