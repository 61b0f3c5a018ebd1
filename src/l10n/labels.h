#pragma once

/// Labels that the string tables do not hold: plain English, sorted by name.
namespace velmora::Labels
{

inline constexpr const char* addArrow = "Add Arrow";
inline constexpr const char* addFilesRemedy = "Add Files";
inline constexpr const char* buildAgain = "Build Again…";
inline constexpr const char* buildFailed = "The image could not be built";
inline constexpr const char* buildGoesOn = "The build goes on when hidden.";
inline constexpr const char* building = "Building %1";
inline constexpr const char* buildingTo = "to %1";
inline constexpr const char* buildLacksSomething = "The image lacks something that the project asks for.";
inline constexpr const char* buildLog = "Build log";
inline constexpr const char* buildReady = "%1 is ready";
inline constexpr const char* buildSteps = "Build steps";
inline constexpr const char* buildTime = "build time";
inline constexpr const char* cancel = "Cancel";
inline constexpr const char* clear = "Clear";
inline constexpr const char* clearMenu = "Clear Menu";
inline constexpr const char* close = "Close";
inline constexpr const char* copyLog = "Copy Log";
inline constexpr const char* deleteSelection = "Delete";
inline constexpr const char* edit = "Edit";
inline constexpr const char* elapsed = "elapsed";
inline constexpr const char* file = "File";
inline constexpr const char* help = "Help";
inline constexpr const char* hide = "Hide";
inline constexpr const char* importText = "Import Text…";
inline constexpr const char* includeInImage = "Include in the image";
inline constexpr const char* jumpToEnd = "Jump to End";
inline constexpr const char* languagePacks = " · %1 language pack(s)";
inline constexpr const char* licenseAgreement = "License Agreement";
inline constexpr const char* licenseCount = "%1 characters · %2 lines";
inline constexpr const char* licenseExplanation = "The text is placed in the image as LICENSE.txt, beside your files.";
inline constexpr const char* licenseLeftOut = "The text is kept but not put into the image.";
inline constexpr const char* licensePlaceholder = "Paste or type the license agreement.";
inline constexpr const char* openImageFolder = "Open Image's Folder";
inline constexpr const char* openRecent = "Open Recent";
inline constexpr const char* quit = "Quit Velmora";
inline constexpr const char* redo = "Redo";
inline constexpr const char* reveal = "Reveal";
inline constexpr const char* saveLog = "Save Log…";
inline constexpr const char* selectNext = "Select Next";
inline constexpr const char* settings = "Settings…";
inline constexpr const char* showInVolume = "Show in Volume";
inline constexpr const char* showItem = "Show Item";
inline constexpr const char* sizeInFolder = "%1 in %2";
inline constexpr const char* stepBackground = "Draw the background";
inline constexpr const char* stepCheck = "Check the project";
inline constexpr const char* stepConvert = "Convert";
inline constexpr const char* stepCreate = "Create the image";
inline constexpr const char* stepDetach = "Detach";
inline constexpr const char* stepLayout = "Lay out the window";
inline constexpr const char* stepNotarize = "Notarize";
inline constexpr const char* stepSign = "Sign";
inline constexpr const char* stepStaging = "Gather the files";
inline constexpr const char* stepVolumeIcon = "Set the volume icon";
inline constexpr const char* stoppedAt = "Stopped at “%1” after %2";
inline constexpr const char* undo = "Undo";
inline constexpr const char* view = "View";
inline constexpr const char* window = "Window";
inline constexpr const char* windowIntro = "How the main window opens and how large it is.";
inline constexpr const char* zoomIn = "Zoom In";
inline constexpr const char* zoomOut = "Zoom Out";
inline constexpr const char* zoomToFit = "Zoom to Fit";

} // namespace velmora::Labels
