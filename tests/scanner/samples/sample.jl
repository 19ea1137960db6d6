# Summary statistics of a table of readings, written against the Julia manual.
module Readings

using Statistics: mean, median
import Base: show, length

export Reading, Table, summarize

#=
A reading from one sensor. Times are seconds since the start;
#= comments nest =# values are in the sensor's own unit.
=#
struct Reading
    sensor::String
    time::Float64
    value::Float64
end

"""
    Table(readings)

A table of readings, kept sorted by time.

# Examples
```julia
julia> t = Table([Reading("a", 1.0, 2.5)]);
```
"""
mutable struct Table
    rows::Vector{Reading}
    Table(rows::Vector{Reading}) = new(sort(rows; by = r -> r.time))
end

length(t::Table) = length(t.rows)

function show(io::IO, t::Table)
    print(io, "Table with $(length(t)) readings")
end

"Groups the readings of `t` by sensor."
function bysensor(t::Table)
    groups = Dict{String,Vector{Float64}}()
    for r in t.rows
        push!(get!(groups, r.sensor, Float64[]), r.value)
    end
    return groups
end

function summarize(t::Table; digits::Int = 2)
    lines = String[]
    for (sensor, values) in sort!(collect(bysensor(t)), by = first)
        m = round(mean(values); digits = digits)
        push!(lines, "$sensor: n=$(length(values)) mean=$m median=$(median(values))")
    end
    isempty(lines) && return "no readings"
    join(lines, '\n')
end

const PATTERN = r"^(\w+),\s*([0-9.]+),\s*(-?[0-9.eE+]+)$"
const LIMIT = 0x7fff
const SCALE = 1.5e-3

function parse_line(line::AbstractString)
    m = match(PATTERN, strip(line))
    m === nothing && throw(ArgumentError("bad line: \"$line\""))
    Reading(m[1], parse(Float64, m[2]), parse(Float64, m[3]) * SCALE)
end

@inline clamp_value(x) = min(max(x, -LIMIT), LIMIT)

if abspath(PROGRAM_FILE) == @__FILE__
    host = `hostname`
    rows = [parse_line(l) for l in eachline(stdin) if !startswith(l, '#')]
    println(summarize(Table(rows)))
    println(:done, ' ', A', " on ", host)
end

end # module
