#include "app/mapplication.h"

#include "brush/mbrushlist.h"
#include "effects/mshaderlist.h"

#include "app/mfileutility.h"
#include "app/mlogger.h"
#include "app/mmainwindow.h"
#include "app/mmath.h"
#include "app/mmousefunctions.h"
#include "app/mnamedmutex.h"
#include "app/mpathvarlist.h"
#include "app/msettings.h"
#include "app/msingleinstance.h"
#include "app/mtablet.h"
#include "app/mutility.h"
#include "brush/mbrushinputinfolist.h"
#include "brush/mbrushsettinginfolist.h"
#include "gpu/mopengl.h"
#include "gpu/mtexturetransfert.h"
#include "tools/mtools.h"

#include <QDebug>
#include <QFile>
#include <QFileOpenEvent>
#include <QLocale>
#include <QMessageBox>
#include <QOpenGLContext>
#include <QSplashScreen>
#include <QSurfaceFormat>
#include <QTabletEvent>
#include <QTime>
#include <QTranslator>

#include <cstdlib>

const QString MApplication::serverName = QStringLiteral("com.tarnbeck.quillmere");
const QString MApplication::mutexName = QStringLiteral("{E28548C0-40FA-45E3-B5AA-856CDD0D68C2}");

MApplication::MApplication(int& argc, char** argv) : QApplication(argc, argv)
{
    m_splash = std::make_unique<QSplashScreen>(QPixmap(QStringLiteral(":/icons/logo/splash.png")));
    setOrganizationName(QStringLiteral("Tarnbeck"));
    setApplicationName(QStringLiteral("Quillmere"));
    setOrganizationDomain(QStringLiteral("tarnbeck.org"));
    setApplicationVersion(QStringLiteral(QUILLMERE_VERSION));
    setWindowIcon(QIcon(QStringLiteral(":/icons/logo/quillmere.svg")));
    registerInstance(this);
    m_splash->show();
    processEvents();
}

MApplication::~MApplication()
{
    delete m_mainWindow;
}

void MApplication::prepareProcess()
{
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);

    QSurfaceFormat format;
    format.setVersion(3, 3);
    format.setSamples(4);
    format.setDepthBufferSize(24);
    format.setStencilBufferSize(8);
    format.setProfile(QSurfaceFormat::CoreProfile);
    QSurfaceFormat::setDefaultFormat(format);
}

int MApplication::run(int& argc, char** argv, const std::function<void(MApplication&)>& afterStartUp)
{
    int exitCode = 0;
    do {
        auto application = std::make_unique<MApplication>(argc, argv);
        auto guard = std::make_unique<MSingleInstance>(serverName);

        if (guard->sendMessage(serverName, {QStringLiteral("hello")})) {
            MLogger::instance()->write(QStringLiteral("Only one instance at a time!"));
            return 0;
        }
        if (!application->startUp(*guard)) {
            application->shutDown();
            return 0;
        }
        guard->listen(serverName);
        if (afterStartUp)
            afterStartUp(*application);
        exitCode = application->exec();
        application->shutDown();
        // The guard goes first: it must not outlive the application it connects to.
        guard.reset();
        application.reset();
    } while (exitCode == restartCode);
    return exitCode;
}

// The order below is the order every other part of the program relies on;
// shutDown() is its reverse.
bool MApplication::startUp(MSingleInstance& guard)
{
    MNamedMutex::create(mutexName);
    connect(&guard, &MSingleInstance::newInstance, this, &MApplication::raiseWindow);
    std::srand(uint(QTime::currentTime().msec()));

    MSettings::instance();
    loadTranslation(QStringLiteral("quillmere"));
    loadTranslation(QStringLiteral("qt"));
    MFileUtility::installData();
    showSplashMessage(tr("translation loaded..."));

    MTablet::instance();
    MMath::instance();
    MBrushSettingInfoList::instance();
    MBrushInputInfoList::instance();
    MOpenGL::instance();

    MShaderList::instance();
    showSplashMessage(tr("effects loaded: %1").arg(MShaderList::instance()->count()));
    MBrushList::instance();
    showSplashMessage(tr("brushes loaded: %1").arg(MBrushList::instance()->count()));

    MMouseFunctions::instance();
    MPathVarList::instance();
    MTextureTransfert::create(512, 6, 4);

    emptyTemporaryDirectory();

    if (!MOpenGL::instance()->initialize()) {
        m_splash->hide();
        QMessageBox::critical(nullptr, QStringLiteral("Quillmere"),
                              tr("Can't run Quillmere: your graphic card driver is not supported."),
                              QMessageBox::Ok);
        return false;
    }

    m_mainWindow = new MMainWindow;
    installEventFilter(MTablet::instance());

    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() > 1 && QFile::exists(arguments.at(1)))
        MSettings::instance()->set_startupFile(arguments.at(1));

    m_mainWindow->show();
    m_splash->finish(m_mainWindow);
    return true;
}

void MApplication::shutDown()
{
    delete m_mainWindow;
    m_mainWindow = nullptr;
    // The tools write their settings as they go, so before the settings do.
    MTools::destroy();
    emptyTemporaryDirectory();

    // The transfer buffers are GL objects of the shared context.
    if (MTextureTransfert::exists() && MTextureTransfert::instance()->isInitialized())
        MTextureTransfert::instance()->shutDown(QOpenGLContext::globalShareContext());
    MTextureTransfert::destroy();
    MPathVarList::destroy();
    MMouseFunctions::destroy();
    MBrushList::destroy();
    MShaderList::destroy();
    MOpenGL::destroy();
    MBrushInputInfoList::destroy();
    MBrushSettingInfoList::destroy();
    MMath::destroy();
    MTablet::destroy();
    MSettings::destroy();
}

bool MApplication::loadTranslation(const QString& name)
{
    // Translators stay installed for the process: a restart installs new ones
    // over them.
    auto* translator = new QTranslator;
    const QString langId = MSettings::instance()->userLangId().toLower();
    const QString path = MUtility::translationsDir() + QStringLiteral("%1_%2").arg(name.toLower(), langId) +
                         QStringLiteral(".qm");
    if (!QFile::exists(path))
        qDebug() << "error file not found" << path;
    if (!translator->load(QLocale(langId), path)) {
        MLogger::instance()->write(
            QStringLiteral("Error loading %1 translation, langId = %2, path = %3").arg(name, langId, path));
        delete translator;
        return false;
    }
    QCoreApplication::installTranslator(translator);
    MLogger::instance()->write(QStringLiteral("%1 translation loaded, langId = %2").arg(name, langId));
    return true;
}

bool MApplication::event(QEvent* event)
{
    switch (event->type()) {
    case QEvent::TabletEnterProximity:
    case QEvent::TabletLeaveProximity:
        // The leave event carries the pointer type too, so the device stays
        // recorded after the stylus has gone.
        MTablet::instance()->set_proximityDevice(int(static_cast<QTabletEvent*>(event)->pointerType()));
        return false;
    case QEvent::FileOpen:
        // Opening a document by this route is not offered; the event is consumed.
        static_cast<QFileOpenEvent*>(event)->url();
        return true;
    default:
        return QApplication::event(event);
    }
}

void MApplication::raiseWindow()
{
    if (!m_mainWindow)
        return;
    m_mainWindow->raise();
    m_mainWindow->showMaximized();
    m_mainWindow->activateWindow();
}

void MApplication::showSplashMessage(const QString& message)
{
    m_splash->showMessage(message, Qt::AlignBottom | Qt::AlignLeft, Qt::black);
}

void MApplication::emptyTemporaryDirectory()
{
    MUtility::clearDirectory(MUtility::tempDir(), false, true);
}
