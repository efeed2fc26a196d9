// The command layer over the vendor's VISA.
#include <instrument/tarnex_supply.h>

int main() {
    ORVA::TARNEX supply;
    return supply.Open({.resource = "USB0::0x1234::0x5678::SN42::INSTR"}) < 0 ? 1 : 0;
}
