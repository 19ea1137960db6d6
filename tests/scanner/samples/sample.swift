// A temperature converter, written against The Swift Programming Language.
import Foundation

/* A unit of temperature. /* Nested comments are allowed. */ */
enum Unit: String, CaseIterable {
    case celsius = "C", fahrenheit = "F"
}

struct Reading {
    let value: Double
    let unit: Unit

    func converted(to target: Unit) -> Reading {
        guard target != unit else { return self }
        switch target {
        case .celsius: return Reading(value: (value - 32) * 5 / 9, unit: target)
        case .fahrenheit: return Reading(value: value * 9 / 5 + 32, unit: target)
        }
    }
}

let reading = Reading(value: 21.5, unit: .celsius)
let text = """
    It is "\(reading.value)" degrees // still text
    """
print("\(reading.converted(to: .fahrenheit).value) F, mask \(0xFF & 0b1010)", text)
