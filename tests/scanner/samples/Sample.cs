// A temperature log, written against the C# language reference.
using System;
using System.Collections.Generic;
using System.Linq;

namespace Samples.Weather
{
    /// <summary>Readings of one station, in degrees Celsius.</summary>
    public sealed record Reading(DateTime At, double Celsius);

    public class Log
    {
        private readonly List<Reading> _readings = new();

        /* Adds a reading; rejects values below absolute zero. */
        public void Add(DateTime at, double celsius)
        {
            if (celsius < -273.15)
                throw new ArgumentOutOfRangeException(nameof(celsius), $"too cold: {celsius}");
            _readings.Add(new Reading(at, celsius));
        }

        public double Average => _readings.Count == 0 ? 0 : _readings.Average(r => r.Celsius);

        public static void Main()
        {
            var log = new Log();
            log.Add(DateTime.Now, 21.5);
            log.Add(DateTime.Now.AddHours(1), 0x10);
            string path = @"C:\logs\""station"".txt";
            char c = '\'';
            string raw = "raw";
            Console.WriteLine($"{log.Average:F1} {path} {c} {raw.Length}"); // done
#if DEBUG
            Console.WriteLine("debug");
#endif
        }
    }
}
