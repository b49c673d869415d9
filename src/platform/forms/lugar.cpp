#include "platform/forms/lugar.h"

#include "core/estado.h"
#include "core/modINI.h"

#include <QGuiApplication>
#include <QMdiSubWindow>
#include <QScreen>
#include <QWidget>

#include <algorithm>

namespace {

const QString seccao = u"FORMS"_s;
constexpr int restoVisivel = 80; // pixels of a window that must stay in sight

QString ficheiroDe(const lugar::Regra &regra) {
    return regra.ficheiro.isEmpty() ? estado().NomePrograma : regra.ficheiro;
}

int ler(const lugar::Regra &regra, const QString &chave, int omissao) {
    bool ok = false;
    const double twips =
        modINI::GetSetting(ficheiroDe(regra), seccao, regra.nome + chave, QString::number(omissao)).toDouble(&ok);
    return lugar::pixeis(ok && std::abs(twips) < 1e6 ? int(twips) : omissao);
}

void escrever(const lugar::Regra &regra, const QString &chave, int pixeis) {
    modINI::SaveSetting(ficheiroDe(regra), seccao, regra.nome + chave, QString::number(pixeis * lugar::twipsPorPixel));
}

// Where windows of this one's kind may lie: the work area, or the screen that holds most of the wanted place. A window
// that was left on a second screen comes up there again, as long as that screen is still there.
QRect area(const QWidget *janela, const QRect &desejado) {
    if (const QWidget *pai = janela->parentWidget(); pai && !janela->isWindow())
        return pai->rect();
    const auto comum = [&](const QScreen *ecra) {
        const QRect parte = ecra->availableGeometry() & desejado;
        return qint64(parte.width()) * parte.height();
    };
    const QScreen *melhor = janela->screen() ? janela->screen() : QGuiApplication::primaryScreen();
    for (const QScreen *ecra : QGuiApplication::screens())
        if (!melhor || comum(ecra) > comum(melhor))
            melhor = ecra;
    return melhor ? melhor->availableGeometry() : QRect(0, 0, 1024, 768);
}

} // namespace

namespace lugar {

QWidget *janelaDe(QWidget *form) {
    if (auto *alojada = qobject_cast<QMdiSubWindow *>(form->parentWidget()))
        return alojada;
    return form->window();
}

SemMaximizar::SemMaximizar(QWidget *janela) : m_janela(janela->isMaximized() ? janela : nullptr) {
    if (m_janela)
        m_janela->showNormal();
}

SemMaximizar::~SemMaximizar() {
    if (m_janela)
        m_janela->showMaximized();
}

void repor(QWidget *form, const Regra &regra) {
    QWidget *janela = janelaDe(form);
    const SemMaximizar livre(janela);
    QSize tamanho = janela->size();
    if (regra.largura > 0)
        tamanho.setWidth(ler(regra, u"WIDTH"_s, regra.largura));
    if (regra.altura > 0)
        tamanho.setHeight(ler(regra, u"HEIGHT"_s, regra.altura));
    const QPoint canto(ler(regra, u"LEFT"_s, 0), ler(regra, u"TOP"_s, 0));
    const QRect onde = area(janela, QRect(canto, tamanho));
    tamanho = tamanho.expandedTo(janela->minimumSizeHint()).boundedTo(onde.size().expandedTo(QSize(320, 240)));
    // A place that is out of sight comes back: enough of the window to grasp it, and its title bar whole.
    const int resto = std::min(restoVisivel, tamanho.width());
    const int x =
        std::clamp(canto.x(), onde.left() + resto - tamanho.width(), std::max(onde.left(), onde.right() - resto));
    const int y = std::clamp(canto.y(), onde.top(), std::max(onde.top(), onde.bottom() - restoVisivel));
    janela->resize(tamanho);
    janela->move(x, y);
}

void guardar(QWidget *form, const Regra &regra) {
    const QWidget *janela = janelaDe(form);
    if (janela->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))
        return; // such a place is not one of its own
    escrever(regra, u"TOP"_s, janela->y());
    escrever(regra, u"LEFT"_s, janela->x());
    if (regra.altura > 0) {
        escrever(regra, u"WIDTH"_s, janela->width());
        escrever(regra, u"HEIGHT"_s, janela->height());
    }
}

} // namespace lugar
