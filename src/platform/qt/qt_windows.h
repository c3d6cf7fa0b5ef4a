#pragma once

#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/application.h"
#include "app/notification_center.h"
#include "app/windows.h"
#include "base/main_queue.h"

class QAction;

namespace platform::qt {

/// The program's windows as the toolkit's top-level widgets. Main thread, while a QApplication
/// lives.
class QtWindows final : public app::Windows, public app::Application {
  public:
    /// Makes the window of a scene, not shown; null for a scene that does not exist.
    using MakeScene = std::function<std::unique_ptr<QWidget>(const std::string& sceneId)>;

    /// Who manages the windows: another program, which is asked over another connection once a
    /// window is on the screen, and from which this one learns by its windows' input that it became
    /// active; or the system in this process, at any time, which tells of that by itself.
    enum class Management { byAnotherProgram, bySystem };

    /// What the toolkit cannot ask of the window manager.
    struct WindowManager {
        /// Brings a window to the front although another program has the input.
        std::function<void(WId window)> activate;
        /// Shows a window that is on the screen in the task bar and the window switcher, or not.
        std::function<void(WId window, app::ActivationPolicy policy)> setPolicy;
        /// Puts a window that is on the screen into its layer.
        std::function<void(WId window, app::WindowLevel level)> setLevel;
        /// Whether a window of this program, which the toolkit believes open, is still there.
        std::function<bool(WId window)> exists;
        Management management = Management::byAnotherProgram;
    };

    /// Hands over what must outlive the process, and calls `done` once, on the main thread.
    using HandOver = std::function<void(std::function<void()> done)>;

    /// `notificationCenter` and `queue` must outlive the object. An empty `handOver` ends at once.
    QtWindows(app::NotificationCenter& notificationCenter, base::MainQueue& queue,
              MakeScene makeScene, WindowManager windowManager, HandOver handOver);
    ~QtWindows() override;
    QtWindows(const QtWindows&) = delete;
    QtWindows& operator=(const QtWindows&) = delete;

    [[nodiscard]] std::vector<app::Window> windows() const override;
    void activate() override;
    void makeKeyAndOrderFront(app::WindowHandle handle) override;
    void openScene(const std::string& sceneId) override;
    void setLevel(app::WindowHandle handle, app::WindowLevel level) override;
    void close(app::WindowHandle handle) override;
    void setActivationPolicy(app::ActivationPolicy policy) override;
    void terminate() override;

    /// Makes the shortcut of `command` work in every window, open now or later. The action must
    /// outlive the windows.
    void addApplicationCommand(QAction& command);

  private:
    struct OpenWindow {
        app::WindowHandle handle = 0;
        std::string sceneId;
        QPointer<QWidget> widget;
    };

    [[nodiscard]] QWidget* find(app::WindowHandle handle);
    void bringToFront(QWidget& window);
    [[nodiscard]] bool canBeManaged(const QWidget& window) const;
    void takeInput(QWidget& window);
    void show(QWidget& window);
    void noteFocus(QWindow* window);
    [[nodiscard]] bool isOpen(const QWidget* window) const;
    void forgetClosedWindows();
    void applyPolicy(QWidget& window);

    app::NotificationCenter& notificationCenter_;
    base::MainQueue& queue_;
    MakeScene makeScene_;
    WindowManager windowManager_;
    HandOver handOver_;
    std::vector<OpenWindow> openWindows_;
    std::vector<QAction*> commands_;
    app::WindowHandle lastHandle_ = 0;
    app::ActivationPolicy policy_ = app::ActivationPolicy::regular;
    enum class Ending { notAsked, asked } ending_ = Ending::notAsked;
    /// The window that was last asked to the front.
    QPointer<QWidget> front_;
    /// That one, as long as it does not have the input yet.
    QPointer<QWidget> awaited_;
    /// Null when it is another program's, or was of a window that is gone.
    QPointer<QWindow> focusWindow_;
    /// What is called later is not called once this is gone.
    QObject life_;
};

}  // namespace platform::qt
