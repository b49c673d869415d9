#include "views/forms/frmEsperaPraCriarGrafico.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/forms/registoForms.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int atrasoMs = 150; // a window that flashes by is worse than none
const QString nome = u"frmEsperaPraCriarGrafico"_s;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(modTraducoes::seccaoDe(nome), chave, omissao);
}

QString mensagemDe(Trabalho trabalho) {
    switch (trabalho) {
    case Trabalho::Exportacao:
        return texto(u"AExportar"_s, u"A exportar..."_s);
    case Trabalho::Copia:
        return texto(u"ACopiar"_s, u"A copiar..."_s);
    case Trabalho::Grafico:
        break;
    }
    return texto(u"lblEspera.Caption"_s, u"A criar o gráfico..."_s);
}

} // namespace

frmEsperaPraCriarGrafico::frmEsperaPraCriarGrafico(QWidget *dono, Trabalho trabalho)
    : QDialog(dono, Qt::Dialog | Qt::FramelessWindowHint) {
    setObjectName(nome);
    setModal(false);
    auto *moldura = new QFrame;
    moldura->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto *mensagem = new QLabel(mensagemDe(trabalho));
    mensagem->setObjectName(u"lblEspera"_s);
    auto *barra = new QProgressBar;
    barra->setRange(0, 0);
    barra->setTextVisible(false);
    barra->setMinimumWidth(14 * fontMetrics().height());
    auto *parar = new QPushButton(texto(u"cmdCancelar.Caption"_s, u"Cancelar"_s));
    parar->setObjectName(u"cmdCancelar"_s);
    parar->setAccessibleName(parar->text());
    connect(parar, &QPushButton::clicked, this, &frmEsperaPraCriarGrafico::reject);
    setWindowTitle(mensagem->text());

    auto *linha = new QHBoxLayout;
    linha->addWidget(barra, 1);
    linha->addWidget(parar);
    auto *interior = new QVBoxLayout(moldura);
    interior->addWidget(mensagem);
    interior->addLayout(linha);
    auto *exterior = new QVBoxLayout(this);
    exterior->setContentsMargins(0, 0, 0, 0);
    exterior->addWidget(moldura);
}

void frmEsperaPraCriarGrafico::reject() {
    Q_EMIT cancelar();
}

CargaEmCurso::CargaEmCurso(QWidget *form, Trabalho trabalho) {
    RegistoForms &forms = registoForms();
    m_desactivado = forms.dono ? forms.dono.data() : form->window();
    m_espera = new frmEsperaPraCriarGrafico(m_desactivado, trabalho);
    forms.anunciar(m_espera);
    m_desactivado->setEnabled(false);
    m_espera->setEnabled(true);
    const QPointer<QWidget> sobre(form);
    QTimer::singleShot(atrasoMs, m_espera, [espera = m_espera, sobre] {
        espera->adjustSize();
        if (sobre)
            espera->move(sobre->mapToGlobal(sobre->rect().center()) - espera->rect().center());
        espera->show();
        espera->activateWindow();
    });
}

CargaEmCurso::~CargaEmCurso() {
    delete m_espera;
    if (m_desactivado)
        m_desactivado->setEnabled(true);
}
