#include "shell/frmIconCompactarErepararBD.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modINI.h"
#include "core/rotina.h"
#include "data/modCompactRepairDB.h"
#include "data/modMain.h"
#include "platform/forms/cantos.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPainterPath>

#include <cmath>
#include <utility>

namespace {

constexpr QSize tamanho(380, 190);
constexpr int intervaloMs = 100;

} // namespace

frmIconCompactarErepararBD::frmIconCompactarErepararBD()
    : QDialog(nullptr, Qt::FramelessWindowHint | Qt::SplashScreen) {
    setObjectName(u"frmIconCompactarErepararBD"_s);
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(tamanho);
    cantos::arredondar(this);
    setAccessibleName(estado().NomePrograma);
    m_timerEspera.setObjectName(u"TimerEspera"_s);
    m_timerEspera.setInterval(intervaloMs);
    connect(&m_timerEspera, &QTimer::timeout, this, &frmIconCompactarErepararBD::TimerEspera_Timer);
    m_timerEspera.start();
}

// Not exec(): before the application's own loop runs, showing a splash already lets events pass. Where those painted
// it, its work was done and it was closed before the dialog's loop stood, which then waited for an end that had been.
void frmIconCompactarErepararBD::mostrarAteAcabar() {
    setModal(true);
    show();
    while (isVisible())
        correrEventos(true);
}

void frmIconCompactarErepararBD::TimerEspera_Timer() {
    if (!isVisible() || !m_timerEspera.isActive())
        return;
    m_timerEspera.stop(); // events run below; one tick does the work
    Rotina("frmIconCompactarErepararBD.TimerEspera_Timer", [] {
        estado().CaminhoBD =
            modINI::GetSetting(estado().NomePrograma, u"BD"_s, u"MAIN"_s, estado().PastaPrograma + u"/BD/Kelvark.mdb");
        forcarEventos();
        modCompactRepairDB::CompactarErepararBD(estado().CaminhoBD);
        forcarEventos();
        modMain::carregaGlobaisBD(true);
    });
    forcarEventos();
    accept();
}

// A trace between its limits: what the program is about.
void frmIconCompactarErepararBD::paintEvent(QPaintEvent *) {
    QPainter p(this);
    // Nothing is gained by waiting for the timer once the splash can be seen.
    if (!std::exchange(m_pintado, true))
        QTimer::singleShot(0, this, &frmIconCompactarErepararBD::TimerEspera_Timer);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
    QLinearGradient fundo(area.topLeft(), area.bottomLeft());
    fundo.setColorAt(0, QColor(24, 58, 84));
    fundo.setColorAt(1, QColor(12, 34, 54));
    p.setPen(QPen(QColor(70, 120, 160), 1));
    p.setBrush(fundo);
    p.drawRoundedRect(area, cantos::raio, cantos::raio);

    p.setPen(QPen(QColor(220, 90, 80, 170), 1.2, Qt::DashLine));
    p.drawLine(QPointF(24, 62), QPointF(356, 62));
    p.setPen(QPen(QColor(90, 150, 230, 170), 1.2, Qt::DashLine));
    p.drawLine(QPointF(24, 112), QPointF(356, 112));
    QPainterPath traco;
    for (int x = 24; x <= 356; x += 4) {
        const double t = (x - 24) / 332.0;
        const QPointF ponto(x, 87 - 14 * std::sin(t * 15) * (0.6 + 0.4 * std::sin(t * 5)) -
                                   20 * std::exp(-std::pow((t - 0.72) * 16, 2)));
        x == 24 ? traco.moveTo(ponto) : traco.lineTo(ponto);
    }
    p.setBrush(Qt::NoBrush);
    p.setPen(QPen(QColor(110, 220, 150), 2.2));
    p.drawPath(traco);

    QFont nome = font();
    nome.setPixelSize(26);
    p.setFont(nome);
    p.setPen(Qt::white);
    p.drawText(QRectF(24, 134, 240, 36), Qt::AlignLeft | Qt::AlignVCenter, estado().NomePrograma);
    p.setFont(font()); // the one that the main window loads in any case
    p.setPen(QColor(180, 205, 225));
    p.drawText(QRectF(220, 134, 136, 36), Qt::AlignRight | Qt::AlignVCenter,
               u"v"_s + QCoreApplication::applicationVersion());
}
