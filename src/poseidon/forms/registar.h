#pragma once

class RegistoForms;

// Makes the windows of the network units known by their names.
void registarPoseidon(RegistoForms &forms);
