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

// Where windows of this one's kind may lie.
QRect area(const QWidget *janela) {
    if (const QWidget *pai = janela->parentWidget(); pai && !janela->isWindow())
        return pai->rect();
    const QScreen *ecra = janela->screen() ? janela->screen() : QGuiApplication::primaryScreen();
    return ecra ? ecra->availableGeometry() : QRect(0, 0, 1024, 768);
}

} // namespace

namespace lugar {

QWidget *janelaDe(QWidget *form) {
    if (auto *alojada = qobject_cast<QMdiSubWindow *>(form->parentWidget()))
        return alojada;
    return form->window();
}

void repor(QWidget *form, const Regra &regra) {
    QWidget *janela = janelaDe(form);
    QSize tamanho = janela->size();
    if (regra.largura > 0)
        tamanho.setWidth(ler(regra, u"WIDTH"_s, regra.largura));
    if (regra.altura > 0)
        tamanho.setHeight(ler(regra, u"HEIGHT"_s, regra.altura));
    const QRect onde = area(janela);
    tamanho = tamanho.expandedTo(janela->minimumSizeHint()).boundedTo(onde.size().expandedTo(QSize(320, 240)));
    // A place from another screen comes back into sight.
    const int x = std::clamp(ler(regra, u"LEFT"_s, 0), onde.left() + restoVisivel - tamanho.width(),
                             std::max(onde.left(), onde.right() - restoVisivel));
    const int y = std::clamp(ler(regra, u"TOP"_s, 0), onde.top(), std::max(onde.top(), onde.bottom() - restoVisivel));
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
