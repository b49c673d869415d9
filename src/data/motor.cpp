#include "data/motor.h"

#include "core/eventos.h"
#include "core/falha.h"
#include "data/avarias.h"

// Each is defined in its own folder, which sees this one; so the arrow between them points one way.
extern const FabricaDeMotor fabricaSQLite;

const FabricaDeMotor &fabricaDe(const QString &) {
    return fabricaSQLite; // every path is one of its files
}

void Motor::exigirNoLugar() {
    if (noLugar())
        return;
    avisada = true;
    throw Falha(erros::falhaDoFicheiro, avarias::textoDeTrocada(m_caminho));
}

void Motor::exigirSemPasso() const {
    if (transaccoes > 0 && profundidadeDosEventos() > profundidade)
        avarias::falharEmPasso();
}
