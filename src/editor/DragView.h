#pragma once

#include <QColor>
#include <QIcon>
#include <QPointF>
#include <QWidget>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "editor/DragViewLayout.h"
#include "editor/PromisedFiles.h"

class QDropEvent;
class QPainter;

namespace trimora::editor {

/// What a drop area tells its owner. Main thread only.
class DragViewDelegate {
 public:
    using Files = std::vector<std::filesystem::path>;

    /// A drop was performed. With `wait` the files are still being written. An empty list is a drop that
    /// held nothing usable.
    virtual void draggingFilesComplete_needsWait(const Files& urls, bool wait) = 0;

    // The others are for those who care.

    /// The drag moved over the view; `newSession` where it is another drag than the one told of before.
    virtual void draggingFilesPerform_newSession(const Files& /*urls*/, bool /*newSession*/) {}
    /// The drag left the view.
    virtual void draggingFilesExited() {}
    /// The drag ended without a drop.
    virtual void draggingFilesCancelled() {}

 protected:
    ~DragViewDelegate() = default;
};

/// The drop area that fills the editor while no picture is loaded: a dashed frame with a picture and two
/// lines of text. The frame lights up while files are over it, and what is dropped goes to the delegate.
///
/// Drags. Local files are handed on as they are, in the drag's order. A picture that comes as bytes (out
/// of a browser) is promised as a file in the caches folder and handed on with the wait flag. A drag that
/// has neither is refused while it hovers, and so is one that comes from this program. The platform tells of
/// a drag only while it is over the view, so each entering is a session of its own and leaving ends it.
///
/// Life cycle: idle; over (mouseIn() is true) from the entering on; idle again after leaving or dropping.
///
/// Presses are not taken: they go to the widget below. Main thread only; the delegate is borrowed, and
/// whoever sets it clears it before it goes.
class DragView final : public QWidget {
 public:
    /// Promised files are written inside `caches` (see cachesFolder()).
    DragView(foundation::QueueFactory& queues, std::filesystem::path caches, QWidget* parent = nullptr);

    void setDelegate(DragViewDelegate* delegate) { delegate_ = delegate; }

    /// Drops on that widget take the same road from now on: the same reading, the same delegate. For the
    /// widget that shows a loaded picture, over which this one is hidden.
    void alsoTakeDropsOn(QWidget& widget);

    /// Drawn in the middle of the frame. `size` is the picture's own, in points: it is shown smaller where
    /// there is no room, and never larger.
    void setImage(const QIcon& image, QSizeF size);
    /// The frame's colour at rest, and while files are over the view.
    void setLineColor(const QColor& color);
    void setHighlightedColor(const QColor& color);
    [[nodiscard]] const QColor& lineColor() const { return lineColor_; }
    [[nodiscard]] const QColor& highlightedColor() const { return highlightedColor_; }

    /// Two centred lines under the picture, both empty to begin with.
    void setStrTitle(const QString& title);
    void setStrDescription(const QString& description);
    [[nodiscard]] const QString& strTitle() const { return strTitle_; }
    [[nodiscard]] const QString& strDescription() const { return strDescription_; }
    /// A third line at the top left, drawn only where it is set.
    void setStrInfoText(std::optional<QString> text);
    [[nodiscard]] const std::optional<QString>& strInfoText() const { return strInfoText_; }

    /// Shows a half-disc that fills with `progress` (0..1) from the left instead of the picture.
    void setProgressMode(bool on);
    void setProgress(float progress);
    [[nodiscard]] bool progressMode() const { return progressMode_; }
    [[nodiscard]] float progress() const { return progress_; }

    /// Draws nothing at all.
    void setHideAll(bool hide);
    [[nodiscard]] bool hideAll() const { return hideAll_; }

    /// Kept for the owner; the view does nothing with it.
    void setClickLock(bool locked) { clickLock_ = locked; }
    [[nodiscard]] bool clickLock() const { return clickLock_; }

    /// Whether files are over the view.
    [[nodiscard]] bool mouseIn() const { return mouseIn_; }

    /// Where everything lies at the present size.
    [[nodiscard]] DragViewLayout currentLayout() const;

 protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    bool handleDrag(QEvent& event, const QWidget& under);

    bool draggingEntered(const QDropEvent& drag);
    bool draggingUpdated(const QDropEvent& drag, const QWidget& under);
    void draggingExited();
    bool performDragOperation(const QDropEvent& drag);
    void draggingEnded();

    [[nodiscard]] QFont lightFont(double points) const;
    [[nodiscard]] DragViewLayout measuredLayout() const;
    void drawFrame(QPainter& painter, const DragViewLayout& places) const;
    void drawImage(QPainter& painter, const DragViewLayout& places) const;
    void drawProgress(QPainter& painter, const DragViewLayout& places) const;
    /// Those that the part of the widget that is painted touches.
    void drawTexts(QPainter& painter, const DragViewLayout& places, const QRectF& touched) const;
    [[nodiscard]] QRectF toWidget(const foundation::Rect& rect) const;

    /// All that the layout follows from.
    struct Measured {
        QSize view;
        QFont font;
        int dotsPerInch = 0;
        QString title;
        QString description;
        QSizeF image;  ///< empty for none
        bool operator==(const Measured&) const = default;
    };

    DragViewDelegate* delegate_ = nullptr;
    PromisedFiles promisedFiles_;

    QIcon image_;
    QSizeF imageSize_;
    QColor lineColor_;
    QColor highlightedColor_;
    QString strTitle_;
    QString strDescription_;
    std::optional<QString> strInfoText_;
    bool progressMode_ = false;
    float progress_ = 0;
    bool hideAll_ = false;
    bool clickLock_ = false;

    bool mouseIn_ = false;
    bool performed_ = false;              // a drop was performed in the present drag
    std::int64_t sessionNumber_ = 0;      // of the present drag; counts the enterings
    std::int64_t prevSessionNumber_ = 0;  // of the drag that the delegate was told of last
    QPointF mousePosition_;               // on the screen, as told last

    mutable std::optional<DragViewLayout> layout_;  // kept, as measuring texts takes long
    mutable Measured measured_;                     // what it was made for
};

}  // namespace trimora::editor
