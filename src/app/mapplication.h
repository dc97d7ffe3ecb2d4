#pragma once

#include "app/msingleton.h"

#include <QApplication>

#include <functional>
#include <memory>

class MSingleInstance;
class MMainWindow;
class QSplashScreen;

// The application object: splash screen, the start-up and shutdown orders of
// the process-wide objects, and the main window.
class MApplication : public QApplication, public MSingleton<MApplication>
{
    Q_OBJECT

public:
    // The exit code that asks for a restart inside the same process.
    static constexpr int restartCode = -123456789;
    static const QString serverName;
    static const QString mutexName;

    MApplication(int& argc, char** argv);
    ~MApplication() override;

    // Application attributes and the default OpenGL format; before any
    // application object exists.
    static void prepareProcess();

    // The whole life of the program: one round per start, again on restartCode.
    // afterStartUp, when given, runs once a round has started up (tests use it
    // to drive a round).
    static int run(int& argc, char** argv, const std::function<void(MApplication&)>& afterStartUp = {});

    bool startUp(MSingleInstance& guard);
    void shutDown();
    bool loadTranslation(const QString& name);

    MMainWindow* mainWindow() const { return m_mainWindow; }

protected:
    bool event(QEvent* event) override;

private Q_SLOTS:
    void raiseWindow();

private:
    void showSplashMessage(const QString& message);
    static void emptyTemporaryDirectory();

    std::unique_ptr<QSplashScreen> m_splash;
    MMainWindow* m_mainWindow = nullptr;
};
