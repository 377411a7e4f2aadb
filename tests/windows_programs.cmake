# What is built here, looked at from outside: the module's exports, the programs' results beside those of Linux, and the
# Linux tests that run the program as a user does, driving kelvra.exe. They come from the release build of this system.
set(KELVRA_LINUX_BUILD ${PROJECT_SOURCE_DIR}/build/release CACHE PATH
  "Build for this system that the Windows programs are compared with and tested by")

add_test(NAME module_exports COMMAND ${CMAKE_COMMAND} -DOBJDUMP=${CMAKE_OBJDUMP} -DMODULE=$<TARGET_FILE:kelvra_module>
  -P ${CMAKE_CURRENT_SOURCE_DIR}/exports_check.cmake)

add_test(NAME windows_end_to_end
  COMMAND ${PROJECT_SOURCE_DIR}/scripts/windows_end_to_end.sh ${KELVRA_LINUX_BUILD}/bin ${CMAKE_BINARY_DIR}/bin)
set_tests_properties(windows_end_to_end PROPERTIES TIMEOUT 300)

set(needs_pictures "needs TIFF or EXR files")
set(needs_viewport "there is no viewport")
set(not_driven
  "program|Snapshot.*|${needs_viewport}"
  "program|ConvertCommand.AWrittenSceneShowsTheResultInTheCloudsPlace|${needs_viewport}"
  "program|RenderCommand.WritesThePictureInTheSizeFormatAndDepthAskedFor|${needs_pictures}"
  "program|RenderCommand.TheRecorderStoresEachFrameWithSixteenBits|${needs_pictures}"
  "program|RenderCommand.OnePixelIsExplainedAsItIsRendered|${needs_pictures}"
  "program|RenderCommand.LightGroundAndSamplesShowInThePicture|${needs_pictures}"
  "program|Info.SaysWhyAFileCannotBeRead|makes links and names that are not UTF-8 and expects the reasons of POSIX"
  "program|Info.OrdinaryUsersReadThatTheyMayNot|becomes another user, who has no Windows programs"
  "program|Output.EveryCommandSparesTheFilesOfOthers|makes symbolic links and devices, which are the other system's"
  "program|RenderCommand.AnOutputThatCannotBeWrittenIsReportedBeforeAnythingIsLoaded|expects the longest name of POSIX file systems"
  "core|ServiceCommands.ReprojectPrintsSixTextsOrThatNothingWasAnswered|names an authority of its own, the system's count here"
)
set(filter_program "-ManualCommands.*:ManualContent.*:Layers.*:Pages.*:Window.*:")
set(filter_core "ServiceCommands.*-")
foreach(entry IN LISTS not_driven)
  string(REPLACE "|" ";" parts "${entry}")
  list(GET parts 0 area)
  list(GET parts 1 case)
  list(GET parts 2 reason)
  message(STATUS "Not driven with kelvra.exe: ${case}: ${reason}")
  string(APPEND filter_${area} "${case}:")
endforeach()
foreach(area program core)
  add_test(NAME linux_test_${area}_drives_kelvra_exe
    COMMAND ${KELVRA_LINUX_BUILD}/tests/test_${area} --gtest_filter=${filter_${area}})
  set_tests_properties(linux_test_${area}_drives_kelvra_exe PROPERTIES TIMEOUT 300
    ENVIRONMENT "KELVRA_TEST_PROGRAM='${PROJECT_SOURCE_DIR}/scripts/wine.sh' '${CMAKE_BINARY_DIR}/bin/kelvra.exe'")
endforeach()
