#pragma once

#include "editor/editor_ports.h"
#include "editor/element_binding.h"
#include "editor/history.h"
#include "editor/recent_documents.h"
#include "editor/selections.h"
#include "model/document.h"
#include "model/project.h"
#include "pipeline/build_step.h"
#include "pipeline/problem_field.h"

#include <QObject>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velmora
{

class BuildSession;
struct BuildOutcome;

/// What the centre of the window edits.
enum class EditorMode { contents, background, licenses };

/// Indices of the inspector tabs.
namespace InspectorTab
{
inline constexpr int layout = 0;
inline constexpr int volume = 1;
inline constexpr int fileInfo = 2;
inline constexpr int arrange = 3;
inline constexpr int text = 4;
} // namespace InspectorTab

/// The one state behind the editor window: the open project, what is selected, where the document lies, the running
/// build. Every change of the project goes through an operation here, which marks the document modified and adds to the
/// history. Operations find elements by id and do nothing for ids that do not exist, unless they say otherwise.
/// Main thread only. Geometry is in content points.
class AppState : public QObject
{
    Q_OBJECT

public:
    /// The documents' file extension.
    static constexpr std::string_view ext = Document::fileExtension;

    explicit AppState(EditorPorts ports, QObject* parent = nullptr);
    /// Stops a running build and waits for it.
    ~AppState() override;

    // Properties. Each has a signal of its name, sent after a new value was stored.

    [[nodiscard]] const DMGProject& project() const { return m_project; }
    [[nodiscard]] const std::optional<Uuid>& selection() const { return m_selections.item; }
    [[nodiscard]] const std::optional<Uuid>& overlaySelection() const { return m_selections.overlay; }
    [[nodiscard]] const std::optional<Uuid>& textSelection() const { return m_selections.text; }
    [[nodiscard]] EditorMode editorMode() const { return m_editorMode; }
    [[nodiscard]] int inspectorTab() const { return m_inspectorTab; }
    /// Where the document is saved; nothing for one that never was.
    [[nodiscard]] const std::optional<std::filesystem::path>& documentURL() const { return m_documentURL; }
    [[nodiscard]] bool isDirty() const { return m_isDirty; }
    [[nodiscard]] bool isBuilding() const { return m_isBuilding; }
    /// Where the running build writes, or the last one wrote or was to write.
    [[nodiscard]] const std::filesystem::path& buildOutput() const { return m_buildOutput; }
    [[nodiscard]] const std::string& buildLog() const { return m_buildLog; }
    /// The image of the last successful build.
    [[nodiscard]] const std::optional<std::filesystem::path>& lastOutputURL() const { return m_lastOutputURL; }
    /// Why the last build failed.
    [[nodiscard]] const std::optional<std::string>& buildError() const { return m_buildError; }
    /// What of the project that was being built the failure is about. It has no signal of its own: buildErrorChanged().
    [[nodiscard]] const ProblemField& buildErrorField() const { return m_buildErrorField; }
    /// What the last image lacks although the project asked for it, in sentences for a person.
    [[nodiscard]] const std::vector<std::string>& buildWarnings() const { return m_buildWarnings; }
    [[nodiscard]] bool showArrowPicker() const { return m_showArrowPicker; }

    void setSelection(std::optional<Uuid> id);
    void setEditorMode(EditorMode mode);
    void setInspectorTab(int index);
    void setShowArrowPicker(bool show);

    // Queries, computed on every call. Pointers hold until the project changes.

    [[nodiscard]] const DMGItem* selectedItem() const;
    [[nodiscard]] const DMGOverlayImage* selectedOverlay() const;
    [[nodiscard]] const DMGTextOverlay* selectedTextOverlay() const;
    [[nodiscard]] bool hasBackgroundImage() const;
    /// Whether the remove command has something to remove; the background picture counts.
    [[nodiscard]] bool canRemoveSelection() const;
    /// The document's file name, "Untitled.velmora" while it has none.
    [[nodiscard]] std::string documentName() const;

    // Selecting. Selecting something clears the other two selections; selecting nothing clears one only.

    void selectItem(std::optional<Uuid> id);
    void selectOverlay(std::optional<Uuid> id);
    void selectTextOverlay(std::optional<Uuid> id);
    /// Background mode and the layout tab; keeps the overlay and text selections.
    void editBackground();
    /// Contents mode; keeps the item selection only.
    void editContents();
    void editLicenses();
    void presentOverlayPicker();

    // Editing in general.

    void markDirty();
    /// Changes fields of the project and marks the document modified: what field editors and drags write with. Edits of
    /// one key that follow each other closely are one undo step; an empty key makes each its own.
    void edit(const EditKey& key, const std::function<void(DMGProject&)>& change);
    /// Nothing when no such element exists now.
    [[nodiscard]] std::optional<ElementBinding<DMGItem>> binding(const Uuid& id);
    [[nodiscard]] std::optional<ElementBinding<DMGOverlayImage>> overlayBinding(const Uuid& id);
    [[nodiscard]] std::optional<ElementBinding<DMGTextOverlay>> textOverlayBinding(const Uuid& id);
    /// Converts legacy icon positions, without marking the document modified.
    void migrateLegacyIconCoordinates();

    // History.

    [[nodiscard]] bool canUndo() const { return m_history.canUndo(); }
    [[nodiscard]] bool canRedo() const { return m_history.canRedo(); }
    /// What undo() would take back and redo() do again, for the menu ("Move Icon"); empty for "Undo" alone.
    [[nodiscard]] std::string undoName() const;
    [[nodiscard]] std::string redoName() const;
    /// Goes one step back or forward, with the selections of then. Reaching the saved state clears the modified mark,
    /// leaving it sets it.
    void undo();
    void redo();
    /// What is typed from now on is a step of its own (the editor lost its focus).
    void endTypingRun();
    /// Everything up to endGesture() is one step, however many edits it makes and however long it takes.
    void beginGesture();
    void endGesture();
    /// Puts the project and the modified mark back to where they were when the gesture began.
    void cancelGesture();

    // Items.

    /// Appends an item for every file, on the default slots. Marks the document modified even for an empty list.
    void addFiles(const std::vector<std::filesystem::path>& files);
    /// Asks for files and folders and adds them.
    void addFilesViaPanel();
    void addApplicationsLink();
    /// Removes all items of that id; an unknown one marks the document modified all the same.
    void remove(Uuid id);
    void removeSelected();
    /// Puts an item before the one that is at `row` of the list now; past the end: last.
    void moveItem(const Uuid& id, std::size_t row);
    /// Puts the anchor on the window's centre lines.
    void centerItemOnCanvas(bool horizontal, bool vertical, const Uuid& id);
    /// Asks for another file or folder to take the place of an item's. A name that was the old file's follows.
    void replaceItemViaPanel(const Uuid& id);

    // Text overlays.

    /// Appends the default caption and selects it.
    void addTextOverlay();
    /// As remove().
    void removeTextOverlay(Uuid id);
    void removeSelectedTextOverlay();
    void centerTextOverlayOnCanvas(bool horizontal, bool vertical, const Uuid& id);
    /// Stores the box as given.
    void commitTextOverlayBounds(const Uuid& id, const Rect& bounds);
    /// Opens the font panel for a text overlay; what is chosen there goes into it for as long as it exists.
    void presentFontPanel(const Uuid& id);

    // Image overlays.

    /// Asks for a picture and adds it centred at `point`, or in the middle of the window.
    void addOverlayImage(std::optional<Point> point);
    /// Adds a picture, made smaller when a side exceeds 220 points, and selects it. A picture that cannot be read ends
    /// in an alert.
    void addOverlayImage(const std::filesystem::path& file, std::optional<Point> point,
                         std::optional<std::string> builtInArrowID = {});
    void addBuiltInArrow(const std::string& id, std::optional<Point> point);
    /// As remove(); the picture is forgotten by the cache.
    void removeOverlay(Uuid id);
    void removeSelectedOverlay();
    /// Stores the box as given.
    void commitOverlayBounds(const Uuid& id, const Rect& bounds);
    /// Keeps the centre.
    void resetOverlayToOriginalSize(const Uuid& id);
    /// Whether another overlay lies before this one, or behind it.
    [[nodiscard]] bool canBringOverlayForward(const Uuid& id) const;
    [[nodiscard]] bool canSendOverlayBackward(const Uuid& id) const;
    /// Draws it one step later, or earlier, than now.
    void bringOverlayForward(const Uuid& id);
    void sendOverlayBackward(const Uuid& id);
    /// Asks for another picture for an overlay. It is fitted into the present box, about the same centre. A picture
    /// that cannot be read ends in an alert.
    void replaceOverlayImageViaPanel(const Uuid& id);
    /// Whether the file's extension is that of a picture.
    [[nodiscard]] static bool isImageURL(const std::filesystem::path& file);

    // What is selected.

    /// Removes the first that there is: text overlay, overlay, item, background picture.
    void removeSelectedOrBackground();
    /// Moves the selected text overlay, overlay or item (the first that exists). Without limits, as typed values.
    void nudgeSelection(double dx, double dy);

    // Background picture, window and icon.

    void pickBackgroundImage();
    void clearBackgroundImage();
    void resetBackgroundImageAdjustments();
    /// Shifts the background picture, dy upward. Without limits.
    void nudgeBackgroundImage(double dx, double dy);
    /// Makes the content area as large as the background picture, a pixel being a point.
    void fitWindowToImage();
    void pickVolumeIcon();
    /// After a confirmation: the factory settings, with the volume's name and the items kept.
    void resetToDefaultSettings();

    // Licence agreement.

    /// Asks for a text in UTF-8 and puts it in the place of the agreement's. Anything else ends in an alert.
    void importLicenseText();

    // Documents. Failures are shown in an alert and leave the state as it is, unless stated otherwise.

    /// Begins a fresh document, without a question.
    void newProject();
    /// Asks for a document and opens it, without a question about the current one.
    void open();
    void openProject(const std::filesystem::path& file);
    /// Opens a document that was dropped, handed over by the desktop or picked from the recent ones, after the question
    /// about unsaved changes.
    void openHandedOver(const std::filesystem::path& file);
    void save();
    /// Asks for a place, which becomes the document's even when writing then fails.
    void saveAs();
    /// Writes the document in place. On failure the file has its former content, or the alert says that it has not.
    void write(const std::filesystem::path& file);
    /// Shows a message in the program's plain alert.
    void presentError(const std::string& message);
    /// Asks about unsaved changes (Save, Don't Save, Cancel) when there are any. False: stay.
    [[nodiscard]] bool confirmClose();
    /// confirmClose(), and for a running build whether to stop it; it has been stopped when this returns true.
    [[nodiscard]] bool confirmQuit();
    /// The latest first.
    [[nodiscard]] std::vector<std::filesystem::path> recentDocuments() const { return m_recent.files(); }
    void clearRecentDocuments();

    // Building.

    /// Asks for a place and builds a copy of the project there on a worker. Does nothing while a build runs.
    void build();
    /// Ends a running build as a failed one and waits until nothing of it is left.
    void stopBuild();
    /// Shows the last image in the file manager.
    void revealLastOutput();
    /// Asks for a place and writes the log there as it is now. Failures are shown in an alert.
    void saveBuildLogViaPanel();

signals:
    void projectChanged();
    void selectionChanged();
    void overlaySelectionChanged();
    void textSelectionChanged();
    void editorModeChanged();
    void inspectorTabChanged();
    void documentURLChanged();
    void isDirtyChanged();
    void isBuildingChanged();
    void buildLogChanged();
    void lastOutputURLChanged();
    void buildErrorChanged();
    void buildWarningsChanged();
    void showArrowPickerChanged();
    void historyChanged(); ///< canUndo() and canRedo() may differ
    void recentDocumentsChanged();
    /// The object as a whole: readers should look at everything again.
    void objectChanged();
    /// Text was added at the end of the log; for views that would not read it whole every time.
    void buildLogAppended(const std::string& text);
    /// The running build has come to `step`; `fraction` of the whole is done.
    void buildStepChanged(velmora::BuildStep step, double fraction);
    /// The build has ended and every property tells so, unlike at isBuildingChanged().
    void buildFinished();

private:
    /// One undo step, from its making to its end; steps inside a step are part of it. Everything that changes the
    /// project in a way that can be undone runs inside one. No question to a person inside.
    class UndoStep
    {
    public:
        explicit UndoStep(AppState& state, const EditKey& key = {});
        ~UndoStep();
        UndoStep(const UndoStep&) = delete;
        UndoStep& operator=(const UndoStep&) = delete;

    private:
        AppState& m_state;
    };
    struct OpenStep {
        int depth = 0;
        EditKey key{};
        Selections before{};
    };
    struct Gesture {
        EditKey key{};
        History::Time began{};
        bool wasDirty = false;
    };

    /// The one place where a project is stored.
    void store(DMGProject project);
    /// Stores a changed copy.
    void change(const std::function<void(DMGProject&)>& change);
    /// One whole edit of the first element with that id; nothing happens when there is none.
    template <typename Element>
    void editElement(const Uuid& id, const std::function<void(Element&)>& change, const std::string& field = {});
    template <typename T>
    void set(T& property, T value, void (AppState::*changed)());

    void setOverlaySelection(std::optional<Uuid> id);
    void setTextSelection(std::optional<Uuid> id);
    void setDirty(bool dirty);
    void setDocumentURL(std::optional<std::filesystem::path> file);
    void rememberDocument(const std::filesystem::path& file);
    void clearSelections();
    void recordStep();
    void showState(const History::Snapshot& snapshot);
    void beginHistory();
    [[nodiscard]] ArrowFileFinder arrowFinder() const;
    /// Asks for an overlay's picture; nothing when the person gave up.
    std::optional<std::filesystem::path> pickOverlayPicture();
    /// The size of a picture for an overlay, points. One that cannot be read ends in an alert.
    std::optional<Size> overlayPictureSize(const std::filesystem::path& file);
    /// Has two overlays change their places in the drawing order.
    void swapOverlays(std::size_t one, std::size_t other);
    void setFont(const Uuid& id, const std::string& name, double size);
    void startBuild(const std::filesystem::path& output);
    void finishBuild(const std::filesystem::path& output, const BuildOutcome& outcome);
    void appendToLog(const std::string& text);

    EditorPorts m_ports;
    RecentDocuments m_recent;
    DMGProject m_project;
    History m_history;
    Selections m_selections{};
    EditorMode m_editorMode = EditorMode::contents;
    int m_inspectorTab = InspectorTab::layout;
    std::optional<std::filesystem::path> m_documentURL{};
    bool m_isDirty = false;
    bool m_isBuilding = false;
    std::filesystem::path m_buildOutput{};
    std::string m_buildLog{};
    std::optional<std::filesystem::path> m_lastOutputURL{};
    std::optional<std::string> m_buildError{};
    ProblemField m_buildErrorField{};
    std::vector<std::string> m_buildWarnings{};
    bool m_showArrowPicker = false;
    OpenStep m_step{};
    std::optional<Gesture> m_gesture{};
    int m_gestures = 0;                    ///< so that each has a key of its own
    std::unique_ptr<BuildSession> m_build; ///< last: its worker posts to this object
};

template <typename Element>
void AppState::editElement(const Uuid& id, const std::function<void(Element&)>& change, const std::string& field)
{
    if (!findElement(m_project.*elementsOf<Element>, id))
        return;
    edit({field, id}, [&](DMGProject& project) { change(*findElement(project.*elementsOf<Element>, id)); });
}

template <typename T>
void AppState::set(T& property, T value, void (AppState::*changed)())
{
    if (property == value)
        return;
    property = std::move(value);
    emit(this->*changed)();
}

} // namespace velmora
