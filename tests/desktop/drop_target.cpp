// A window of another program that takes what is dropped on it: prints "ready" when it is on the
// screen, "entered" when a drag has come in, and "dropped <URL>" for each URL of a drop, "dropped
// nothing" without one.
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QTimer>
#include <QUrl>
#include <QWidget>
#include <iostream>
#include <utility>

namespace {

class Target final : public QWidget {
  public:
    Target() { setAcceptDrops(true); }

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override {
        event->acceptProposedAction();
        // The answer goes out with the end of this event.
        QTimer::singleShot(0, [] { std::cout << "entered" << std::endl; });
    }
    void dropEvent(QDropEvent* event) override {
        for (const QUrl& url : event->mimeData()->urls()) {
            std::cout << "dropped " << url.toString().toStdString() << std::endl;
        }
        if (event->mimeData()->urls().isEmpty()) {
            std::cout << "dropped nothing" << std::endl;
        }
        event->acceptProposedAction();
    }
    void paintEvent(QPaintEvent* /*event*/) override {
        if (!std::exchange(hasPainted_, true)) {
            QTimer::singleShot(0, [] { std::cout << "ready" << std::endl; });
        }
    }

  private:
    bool hasPainted_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    Target target;
    target.setGeometry(20, 40, 200, 200);
    target.show();
    return QApplication::exec();
}
